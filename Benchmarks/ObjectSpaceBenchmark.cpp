#include <Tov/Core/Library.h>
#include <Tov/Core/ObjectSpace.h>
#include "BenchmarkLibrary.h"
#include "Item.h"
#include "MedianReporter.h"
#include "PairedBenchmarks.h"
#include "RandomInterleaving.h"
#include <benchmark/benchmark.h>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <new>
#include <random>
#include <unistd.h>
#include <unordered_map>
#include <vector>

// An object space of 100,000 objects against a plain std::unordered_map<uint64_t, Object*>
// doing the same work in the same run: creating the objects and entering them under
// random 64-bit identifiers, looking each of them up once in random order, and deleting
// them. The space's objects enter and leave through initialisation and deletion, with
// one view listening, as in a document; the map's are allocated, inserted, erased and
// deleted. Times are CPU times per object, medians of five repetitions interleaved at
// random. A second measure counts the allocations of one change broadcast to views that
// allocate nothing.

namespace
{

constexpr size_t numObjects = 100000;
constexpr int numRepetitions = 5;

/** The objects of both contestants. */
using tov::benchmarks::Item;

/** A view that listens and allocates nothing. */
class CountingView : public tov::ObjectSpaceView
{
public:
    using ObjectSpaceView::ObjectSpaceView;
    void objectCreated (tov::Object*) override  { ++events; }
    void objectChanged (tov::Object*) override  { ++events; }
    void objectDestroyed (tov::Object*) override { ++events; }
    uint64_t events = 0;
};

std::atomic<uint64_t> numAllocations { 0 };

/** The same random identifiers, and the same random order of lookups, for both contestants. */
struct Workload
{
    std::vector<uint64_t> identifiers;
    std::vector<size_t> lookupOrder;

    Workload()
    {
        std::mt19937_64 random (1981);
        for (size_t i = 0; i < numObjects; ++i)
            identifiers.push_back (random() | 2); // never null nor the root identifier
        for (size_t i = 0; i < numObjects; ++i)
            lookupOrder.push_back (i);
        std::shuffle (lookupOrder.begin(), lookupOrder.end(), random);
    }

    static const Workload& get()
    {
        static const Workload workload;
        return workload;
    }
};

//==============================================================================
/** A space with a listening view, filled and emptied through the object life cycle. */
struct SpaceContestant
{
    tov::ObjectSpace space { "Benchmark" };
    std::vector<Item*> items;

    SpaceContestant() { space.addView (new CountingView (space)); }

    void create (const Workload& workload)
    {
        items.reserve (numObjects);
        for (const auto identifier : workload.identifiers)
        {
            auto* item = static_cast<Item*> (Item::staticClass.createObject());
            item->setUniqueIdentifier (tov::UniqueIdentifier (identifier));
            item->incrementReferenceCounter();
            item->callInitializeObject (&space, nullptr, nullptr);
            items.push_back (item);
        }
    }

    size_t lookUp (const Workload& workload) const
    {
        size_t found = 0;
        for (const auto index : workload.lookupOrder)
            found += space.getObject (tov::UniqueIdentifier (workload.identifiers[index])) != nullptr;
        return found;
    }

    void destroy()
    {
        for (auto* item : items)
            item->decrementReferenceCounter (true);
        items.clear();
    }
};

/** The peer: the same objects in a plain hash map. */
struct MapContestant
{
    std::unordered_map<uint64_t, tov::Object*> map;
    std::vector<Item*> items;

    void create (const Workload& workload)
    {
        items.reserve (numObjects);
        for (const auto identifier : workload.identifiers)
        {
            auto* item = static_cast<Item*> (Item::staticClass.createObject());
            map.emplace (identifier, item);
            items.push_back (item);
        }
    }

    size_t lookUp (const Workload& workload) const
    {
        size_t found = 0;
        for (const auto index : workload.lookupOrder)
            found += map.find (workload.identifiers[index]) != map.end();
        return found;
    }

    void destroy()
    {
        for (size_t i = 0; i < items.size(); ++i)
        {
            map.erase (Workload::get().identifiers[i]);
            delete items[i];
        }
        items.clear();
    }
};

//==============================================================================
enum class Operation { create, lookUp, destroy };
const char* const operationNames[] = { "Create", "LookUp", "Delete" };

/** Runs one operation on 100,000 objects per iteration; the others are done outside the measure. */
template <class Contestant>
void runOperation (benchmark::State& state, Operation operation)
{
    const auto& workload = Workload::get();
    for (auto _ : state)
    {
        state.PauseTiming();
        auto contestant = std::make_unique<Contestant>();
        if (operation != Operation::create)
            contestant->create (workload);
        state.ResumeTiming();

        switch (operation)
        {
            case Operation::create:  contestant->create (workload); break;
            case Operation::lookUp:  if (contestant->lookUp (workload) != numObjects) state.SkipWithError ("an object was not found"); break;
            case Operation::destroy: contestant->destroy(); break;
        }

        state.PauseTiming();
        contestant->destroy();
        contestant.reset();
        state.ResumeTiming();
    }
    state.counters["objects"] = (double) numObjects;
}

/** One change of an initialised object of the space, heard by two views; counts the allocations. */
void sendObjectChanged (benchmark::State& state)
{
    tov::ObjectSpace space ("Benchmark");
    space.addView (new CountingView (space));
    space.addView (new CountingView (space));
    auto* item = static_cast<Item*> (Item::staticClass.createObject());
    item->incrementReferenceCounter();
    item->callInitializeObject (&space, nullptr, nullptr);

    const uint64_t allocationsBefore = numAllocations.load();
    for (auto _ : state)
        item->changed();
    const uint64_t allocations = numAllocations.load() - allocationsBefore;

    state.counters["allocations per change"] = (double) allocations / (double) state.iterations();
    item->decrementReferenceCounter (true);
}

void registerBenchmarks()
{
    tov::benchmarks::registerPairedBenchmarks (operationNames, 3,
        "ObjectSpace", [] (benchmark::State& state, int operation) { runOperation<SpaceContestant> (state, (Operation) operation); },
        "UnorderedMap", [] (benchmark::State& state, int operation) { runOperation<MapContestant> (state, (Operation) operation); });
    tov::benchmarks::registerRepeated ("SendObjectChanged/ObjectSpace", sendObjectChanged, numRepetitions, benchmark::kNanosecond);
}

//==============================================================================
/** The space's time per object divided by the map's, from the medians of the run. */
void printRatioTable (const tov::benchmarks::MedianReporter& reporter)
{
    std::printf ("\nObjectSpace's CPU time per object divided by std::unordered_map's (%zu objects; below 1: the space is faster)\n", numObjects);
    std::printf ("%-10s %14s %14s %8s\n", "Operation", "Space ns/obj", "Map ns/obj", "Ratio");
    for (const auto* operation : operationNames)
    {
        const double space = reporter.getMedianSeconds (std::string (operation) + "/ObjectSpace") / numObjects * 1e9;
        const double map = reporter.getMedianSeconds (std::string (operation) + "/UnorderedMap") / numObjects * 1e9;
        if (space > 0 && map > 0)
            std::printf ("%-10s %14.1f %14.1f %8.2f\n", operation, space, map, space / map);
    }
    const double change = reporter.getMedianSeconds ("SendObjectChanged/ObjectSpace") * 1e9;
    if (change > 0)
        std::printf ("\nObject::changed in a space with two views: %.1f ns, %.3f allocations per change\n", change,
                     reporter.getMedianCounter ("SendObjectChanged/ObjectSpace", "allocations per change", -1.0));
    std::fflush (stdout);
}

} // namespace

//==============================================================================
// Every allocation of the process is counted, the library's included.
void* operator new (size_t size)
{
    numAllocations.fetch_add (1, std::memory_order_relaxed);
    if (auto* memory = std::malloc (size != 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete (void* memory) noexcept               { std::free (memory); }
void operator delete (void* memory, size_t) noexcept       { std::free (memory); }

int main (int argc, char** argv)
{
    if (! tov::benchmarks::initializeWithRandomInterleaving (argc, argv))
        return 1;

    tov::initializeTov()->addLibrary (tov::benchmarks::createLibrary<Item> ("Benchmark"));
    Workload::get();

    registerBenchmarks();
    tov::benchmarks::runWithMedianReporter (printRatioTable);
    tov::deinitializeTov();
    return 0;
}
