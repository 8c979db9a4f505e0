#include <Tov/Atomic/Integer.h>
#include <Tov/Atomic/String.h>
#include <Tov/Container/OwnedVector.h>
#include <Tov/Container/Selection.h>
#include <Tov/Core/ConverterClassGenerators.h>
#include <Tov/Message/Transaction/ScopedTransaction.h>
#include <Tov/Standard/SelectionAccessor.h>
#include "EditingPeer.h"
#include "MedianReporter.h"
#include "PairedBenchmarks.h"
#include <benchmark/benchmark.h>
#include <cstdio>

// One number set in each of the 10,000 selected objects of a document, through
// SelectionAccessor, against the same edit written by hand, in the same run. The value is of
// another class (turns of a knob) and reaches each number through a registered converter. The
// accessor finds the number again in every member by its path from the member, makes the
// description of the change ("Turn in ..." and the 10,000 members), and records the edit in one
// transaction; the hand-written edit knows the numbers, and stores and converts each one under
// one transaction of a short description. Both transactions are performed into an envelop
// posted to a receiver that drops it, and kept in the history. Edit: the whole edit. Undo: one
// step of the history, the redo being taken outside the measure. After each edit and each undo,
// outside the measure, every one of the 10,000 numbers is checked. CPU times, five repetitions
// interleaved at random, medians.

namespace
{

constexpr size_t numElements = 10000;
constexpr size_t numEditsKeptWhileTiming = 8;

/** An element of the document: a name, as the objects of a document have, and one number. */
class Element : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Element, Object)

    tov::String name;
    tov::Integer value;
};

/** The document: a list of elements, all of them selected. */
class Scene : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Scene, Object)

    tov::OwnedVector<Element> elements;
    tov::Selection<Element> selected;
};

/** The value of the edit: turns of a knob, ten each once they are a number. */
class Turns : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Turns, Object)

    tov::Integer count;
};

using TurnsToInteger = tov::Converter<Turns, tov::Integer>;
class TurnsToIntegerConverter : public TurnsToInteger
{
public:
    TOV_DECLARE_CLASS (TurnsToIntegerConverter, TurnsToInteger)

    bool convert (tov::ExecutionContext&, const tov::Object& source, tov::Object& target, int64_t) const override
    {
        static_cast<tov::Integer&> (target).set (static_cast<const Turns&> (source).count.get() * 10, true);
        return true;
    }
};

TOV_BEGIN_CLASS (Element)
    TOV_VARIABLE (name)
    TOV_VARIABLE (value)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Scene)
    TOV_VARIABLE (elements)
    TOV_VARIABLE (selected)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Turns)
    TOV_VARIABLE (count)
TOV_END_CLASS()

TOV_BEGIN_CLASS (TurnsToIntegerConverter)
TOV_END_CLASS()

tov::benchmarks::EditingService* theService = nullptr;

/** The scene of numElements elements, all selected, made before the space holds it. */
Scene* makeScene()
{
    auto* scene = static_cast<Scene*> (Scene::staticClass.createObject());
    std::vector<tov::Object*> all;
    for (size_t i = 0; i < numElements; ++i)
    {
        auto* element = static_cast<Element*> (Element::staticClass.createObject());
        element->name.set ("Light " + juce::String ((int) i + 1), false);
        scene->elements.append (element, false);
        all.push_back (element);
    }
    scene->selected.set (all, false);
    return scene;
}

//==============================================================================
/** The document and its edits; the numbers hold ten times the number of the last edit. */
struct Contestant
{
    Scene* scene = makeScene();
    tov::benchmarks::EditedDocument document { *theService, scene };
    int64_t numEdits = 0;

    virtual ~Contestant() = default;
    /** Sets the turns into every number as one transaction. */
    virtual void apply (const Turns& turns) = 0;

    void edit()
    {
        Turns turns;
        turns.count.set (++numEdits, false);
        apply (turns);
    }

    void undo()                                      { document.history.undo(); --numEdits; }
    void redo()                                      { document.history.redo(); ++numEdits; }
    void clearHistory()                              { document.history.clear ("Start"); }

    /** Every number holds what the last edit gave. */
    bool holdsTheLastEdit() const
    {
        for (auto* element : scene->elements)
            if (element->value.get() != numEdits * 10)
                return false;
        return true;
    }
};

struct SelectionAccessorContestant : public Contestant
{
    tov::SelectionAccessor accessor;

    SelectionAccessorContestant()                    { accessor.setSelection (&scene->selected); }

    void apply (const Turns& turns) override
    {
        accessor.setTargetValue (scene->elements.getFirst()->value, turns, "Turn", nullptr);
    }
};

struct LoopContestant : public Contestant
{
    void apply (const Turns& turns) override
    {
        tov::ScopedTransaction transaction ("Turn", scene->elements.getFirst()->value);
        for (auto* element : scene->elements)
        {
            transaction.store (element->value, false);
            turns.convertTo (element->value);
        }
    }
};

//==============================================================================
enum class Operation { edit, undo };
const char* const operationNames[] = { "Edit", "Undo" };

template <class ContestantType>
void runOperation (benchmark::State& state, Operation operation)
{
    ContestantType contestant;
    contestant.edit();
    contestant.edit();
    size_t numKept = 2;
    for (auto _ : state)
    {
        if (operation == Operation::edit)
        {
            contestant.edit();
            state.PauseTiming();
            if (! contestant.holdsTheLastEdit())
                state.SkipWithError ("A number was not changed");
            if (++numKept == numEditsKeptWhileTiming)
            {
                contestant.clearHistory();
                numKept = 0;
            }
            state.ResumeTiming();
        }
        else
        {
            contestant.undo();
            state.PauseTiming();
            if (! contestant.holdsTheLastEdit())
                state.SkipWithError ("A number was not put back");
            contestant.redo();
            state.ResumeTiming();
        }
    }
}

void registerBenchmarks()
{
    tov::benchmarks::registerPairedBenchmarks (operationNames, 2,
        "SelectionAccessor", [] (benchmark::State& state, int operation) { runOperation<SelectionAccessorContestant> (state, (Operation) operation); },
        "Loop", [] (benchmark::State& state, int operation) { runOperation<LoopContestant> (state, (Operation) operation); });
}

void printTables (const tov::benchmarks::MedianReporter& reporter)
{
    std::printf ("\nCPU time per changed number, one number in each of %zu selected objects (ratio above 1: the accessor's cost over the loop)\n",
                 numElements);
    tov::benchmarks::printPairedRatioTable (reporter, operationNames, 2, "SelectionAccessor", "Accessor ns", "Loop", "Loop ns",
                                            [] (int) { return numElements; });

    std::printf ("\nCPU time per operation on the %zu objects (goal: under 20 ms)\n", numElements);
    std::printf ("%-13s %16s %16s\n", "Operation", "Accessor ms", "Loop ms");
    for (auto* operation : operationNames)
        std::printf ("%-13s %16.2f %16.2f\n", operation,
                     reporter.getMedianSeconds (std::string (operation) + "/SelectionAccessor") * 1e3,
                     reporter.getMedianSeconds (std::string (operation) + "/Loop") * 1e3);
    std::fflush (stdout);
}

} // namespace

int main (int argc, char** argv)
{
    return tov::benchmarks::runEditingBenchmarks<Element, Scene, Turns, TurnsToIntegerConverter> (argc, argv, "SelectionBenchmark", theService, registerBenchmarks, printTables);
}
