#include <Tov/Atomic/Integer.h>
#include <Tov/Container/OwnedVector.h>
#include <Tov/Core/Library.h>
#include <Tov/Core/StateObjectExporter.h>
#include "BenchmarkLibrary.h"
#include "MedianReporter.h"
#include "PairedBenchmarks.h"
#include "RandomInterleaving.h"
#include <benchmark/benchmark.h>
#include <memory>
#include <vector>

// An OwnedVector of 100,000 small reflected objects against std::vector<std::unique_ptr<T>>
// of plain structs with the same values, in the same run. Append: make each element and
// append it. Index: read a value of every element by index. RemoveMiddle: take 1,000
// elements out of the middle, one at a time, each deleted. Save: the vector's State through
// the exporter, written in the binary form, against the same State built by hand from the
// plain structs and written the same way. What an operation does not measure (filling,
// emptying) is done outside the measure. CPU times, five repetitions interleaved at random,
// medians.

namespace
{

constexpr size_t numElements = 100000;
constexpr size_t numRemovals = 1000;

/** The reflected element: two integers. */
class Point : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Point, Object)

    tov::Integer x;
    tov::Integer y;
};

TOV_BEGIN_CLASS (Point)
    TOV_VARIABLE (x)
    TOV_VARIABLE (y)
TOV_END_CLASS()

/** The plain element: the same two integers. */
struct PlainPoint
{
    int64_t x, y;
};

struct ReflectedContestant
{
    tov::OwnedVector<Point> points;

    void append (size_t count)
    {
        points.reserve (count);
        for (size_t i = 0; i < count; ++i)
        {
            auto* point = static_cast<Point*> (Point::staticClass.createObject());
            point->x.set ((int64_t) i, false);
            point->y.set ((int64_t) (i * 2), false);
            points.append (point, false);
        }
    }

    int64_t sum() const
    {
        int64_t total = 0;
        for (size_t i = 0; i < points.size(); ++i)
            total += points.get (i)->x.get();
        return total;
    }

    void removeMiddle()                              { points.remove (points.size() / 2, false); }
    size_t size() const                              { return points.size(); }
    void clear()                                     { points.clear (false); }

    size_t save() const
    {
        juce::MemoryOutputStream output;
        tov::StateObjectExporter::make (points, 0, false)->toBinary (output);
        return output.getDataSize();
    }
};

struct PlainContestant
{
    std::vector<std::unique_ptr<PlainPoint>> points;

    void append (size_t count)
    {
        points.reserve (count);
        for (size_t i = 0; i < count; ++i)
            points.push_back (std::make_unique<PlainPoint> (PlainPoint { (int64_t) i, (int64_t) (i * 2) }));
    }

    int64_t sum() const
    {
        int64_t total = 0;
        for (size_t i = 0; i < points.size(); ++i)
            total += points[i]->x;
        return total;
    }

    void removeMiddle()                              { points.erase (points.begin() + (std::ptrdiff_t) (points.size() / 2)); }
    size_t size() const                              { return points.size(); }
    void clear()                                     { points.clear(); }

    /** The State that the exporter makes of the reflected vector, built straight from the values. */
    size_t save() const
    {
        auto root = std::make_shared<tov::State>();
        root->reserveVariables (points.size());
        for (auto& point : points)
        {
            auto target = std::make_shared<tov::State>();
            target->setUniqueIdentifier (tov::UniqueIdentifier());
            target->addVariable ("x", std::make_shared<tov::State> ((long long) point->x));
            target->addVariable ("y", std::make_shared<tov::State> ((long long) point->y));
            auto element = std::make_shared<tov::State>();
            element->setOwnedPointer (target);
            root->addVariable (element);
        }
        juce::MemoryOutputStream output;
        root->toBinary (output);
        return output.getDataSize();
    }
};

enum class Operation { append, index, removeMiddle, save };
const char* const operationNames[] = { "Append", "Index", "RemoveMiddle", "Save" };

/** Elements per operation, for the times per element. */
size_t getCount (Operation operation)    { return operation == Operation::removeMiddle ? numRemovals : numElements; }

template <class Contestant>
void runOperation (benchmark::State& state, Operation operation)
{
    Contestant contestant;
    if (operation != Operation::append)
        contestant.append (numElements);
    for (auto _ : state)
    {
        switch (operation)
        {
            case Operation::append:
                contestant.append (numElements);
                state.PauseTiming();
                contestant.clear();
                state.ResumeTiming();
                break;
            case Operation::index:
                benchmark::DoNotOptimize (contestant.sum());
                break;
            case Operation::removeMiddle:
                for (size_t i = 0; i < numRemovals; ++i)
                    contestant.removeMiddle();
                state.PauseTiming();
                contestant.clear();
                contestant.append (numElements);
                state.ResumeTiming();
                break;
            case Operation::save:
                benchmark::DoNotOptimize (contestant.save());
                break;
        }
    }
}

void registerBenchmarks()
{
    tov::benchmarks::registerPairedBenchmarks (operationNames, 4,
        "OwnedVector", [] (benchmark::State& state, int operation) { runOperation<ReflectedContestant> (state, (Operation) operation); },
        "StdVector", [] (benchmark::State& state, int operation) { runOperation<PlainContestant> (state, (Operation) operation); });
}

/** The reflected vector's time per element divided by the plain one's, from the medians of the run. */
void printRatioTable (const tov::benchmarks::MedianReporter& reporter)
{
    std::printf ("\nOwnedVector's CPU time per element divided by std::vector<std::unique_ptr>'s (%zu elements; below 1: OwnedVector is faster)\n", numElements);
    tov::benchmarks::printPairedRatioTable (reporter, operationNames, 4, "OwnedVector", "OwnedVector ns", "StdVector", "std::vector ns",
                                            [] (int operation) { return getCount ((Operation) operation); });
}

} // namespace

int main (int argc, char** argv)
{
    if (! tov::benchmarks::initializeWithRandomInterleaving (argc, argv))
        return 1;

    tov::initializeTov()->addLibrary (tov::benchmarks::createLibrary<Point> ("Benchmark"));
    registerBenchmarks();
    tov::benchmarks::runWithMedianReporter (printRatioTable);
    tov::deinitializeTov();
    return 0;
}
