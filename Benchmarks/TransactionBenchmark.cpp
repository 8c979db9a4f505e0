#include <Tov/Atomic/Real.h>
#include <Tov/Container/OwnedVector.h>
#include <Tov/Message/Transaction/ScopedTransaction.h>
#include "EditingPeer.h"
#include "MedianReporter.h"
#include "PairedBenchmarks.h"
#include <benchmark/benchmark.h>
#include <juce_data_structures/juce_data_structures.h>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <malloc.h>

// Undoable edits of a document of 10,000 objects against juce::UndoManager on a
// juce::ValueTree of the same shape, in the same run. One edit changes 1,000 numbers, one in
// ten elements: tov records it as one composite transaction (a scope on the document in which
// each number is stored, then set), performs it into an envelop posted to a receiver that drops
// it, and keeps it in a History; the ValueTree sets the same properties under one UndoManager
// transaction, the manager keeping every transaction. Build: the whole edit. Undo and Redo: one
// step of the history, the other direction being taken outside the measure. CPU times, five
// repetitions interleaved at random, medians. Then the memory that 1,000 edits of 100 numbers
// keep, per changed number: the bytes in use by the allocator after the edits less before.

namespace
{

constexpr size_t numElements = 10000;
constexpr size_t numChangesPerEdit = 1000;
constexpr size_t numEditsForMemory = 1000;
constexpr size_t numChangesPerEditForMemory = 100;
constexpr size_t numEditsKeptWhileTiming = 64;

/** An element of the document: one number. */
class Element : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Element, Object)

    tov::Real value;
};

/** The document: a list of elements. */
class Scene : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Scene, Object)

    tov::OwnedVector<Element> elements;
};

TOV_BEGIN_CLASS (Element)
    TOV_VARIABLE (value)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Scene)
    TOV_VARIABLE (elements)
TOV_END_CLASS()

tov::benchmarks::EditingService* theService = nullptr;

/** The element changed by the change'th number of the edit'th edit. */
size_t getElementIndex (size_t edit, size_t change, size_t changesPerEdit)
{
    return (edit * changesPerEdit + change * (numElements / changesPerEdit)) % numElements;
}

//==============================================================================
/** The scene of numElements elements, made before the space holds it. */
Scene* makeScene()
{
    auto* scene = static_cast<Scene*> (Scene::staticClass.createObject());
    for (size_t i = 0; i < numElements; ++i)
        scene->elements.append (static_cast<Element*> (Element::staticClass.createObject()), false);
    return scene;
}

struct TovContestant
{
    Scene* scene = makeScene();
    tov::benchmarks::EditedDocument document { *theService, scene };
    tov::History& history = document.history;
    size_t numEdits = 0;

    void edit (size_t changesPerEdit)
    {
        tov::ScopedTransaction transaction ("Edit", *scene);
        const double value = (double) ++numEdits;
        for (size_t i = 0; i < changesPerEdit; ++i)
        {
            auto& number = scene->elements.get (getElementIndex (numEdits, i, changesPerEdit))->value;
            transaction.store (number, false);
            number.set (value);
        }
    }

    void undo()                                      { history.undo(); }
    void redo()                                      { history.redo(); }
    void clearHistory()                              { history.clear ("Start"); }
};

struct UndoManagerContestant
{
    const juce::Identifier valueName { "value" };
    juce::UndoManager undoManager { std::numeric_limits<int>::max(), 1 };
    juce::ValueTree scene { "Scene" };
    juce::ValueTree elements { "Elements" };
    size_t numEdits = 0;

    UndoManagerContestant()
    {
        scene.appendChild (elements, nullptr);
        for (size_t i = 0; i < numElements; ++i)
            elements.appendChild (juce::ValueTree ("Element", { { valueName, 0.0 } }), nullptr);
    }

    void edit (size_t changesPerEdit)
    {
        undoManager.beginNewTransaction ("Edit");
        const double value = (double) ++numEdits;
        for (size_t i = 0; i < changesPerEdit; ++i)
            elements.getChild ((int) getElementIndex (numEdits, i, changesPerEdit)).setProperty (valueName, value, &undoManager);
    }

    void undo()                                      { undoManager.undo(); }
    void redo()                                      { undoManager.redo(); }
    void clearHistory()                              { undoManager.clearUndoHistory(); }
};

//==============================================================================
/** glibc merges the small blocks that a cleared history freed only at its next large
    allocation, which would fall into the next measured edit: one is made here, while the timing
    is paused, so that the merging is counted with the clearing, for both contestants. */
void mergeFreedBlocks()
{
    void* volatile block = std::malloc (4096);
    std::free (block);
}

enum class Operation { build, undo, redo };
const char* const operationNames[] = { "Build", "Undo", "Redo" };

template <class Contestant>
void runOperation (benchmark::State& state, Operation operation)
{
    Contestant contestant;
    contestant.edit (numChangesPerEdit);
    size_t numKept = 1;
    for (auto _ : state)
    {
        switch (operation)
        {
            case Operation::build:
                contestant.edit (numChangesPerEdit);
                if (++numKept == numEditsKeptWhileTiming)
                {
                    state.PauseTiming();
                    contestant.clearHistory();
                    mergeFreedBlocks();
                    numKept = 0;
                    state.ResumeTiming();
                }
                break;
            case Operation::undo:
                contestant.undo();
                state.PauseTiming();
                contestant.redo();
                state.ResumeTiming();
                break;
            case Operation::redo:
                state.PauseTiming();
                contestant.undo();
                state.ResumeTiming();
                contestant.redo();
                break;
        }
    }
}

void registerBenchmarks()
{
    tov::benchmarks::registerPairedBenchmarks (operationNames, 3,
        "History", [] (benchmark::State& state, int operation) { runOperation<TovContestant> (state, (Operation) operation); },
        "UndoManager", [] (benchmark::State& state, int operation) { runOperation<UndoManagerContestant> (state, (Operation) operation); });
}

//==============================================================================
/** The bytes the allocator has handed out: from its heap, and in blocks mapped on their own
    (a large table of objects is one). */
size_t getBytesInUse()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

/** The bytes that the kept edits hold, per changed number. */
template <class Contestant>
double measureMemoryPerChange()
{
    Contestant contestant;
    const size_t before = getBytesInUse();
    for (size_t i = 0; i < numEditsForMemory; ++i)
        contestant.edit (numChangesPerEditForMemory);
    const size_t after = getBytesInUse();
    return (double) (after - before) / (double) (numEditsForMemory * numChangesPerEditForMemory);
}

void printTables (const tov::benchmarks::MedianReporter& reporter)
{
    std::printf ("\nCPU time per changed number, edits of %zu numbers in a document of %zu objects (ratio below 1: History is faster)\n",
                 numChangesPerEdit, numElements);
    tov::benchmarks::printPairedRatioTable (reporter, operationNames, 3, "History", "History ns", "UndoManager", "UndoManager ns",
                                            [] (int) { return numChangesPerEdit; });

    const double history = measureMemoryPerChange<TovContestant>();
    const double undoManager = measureMemoryPerChange<UndoManagerContestant>();
    std::printf ("\nMemory kept per changed number, %zu edits of %zu numbers\n", numEditsForMemory, numChangesPerEditForMemory);
    std::printf ("%-13s %16s %16s %8s\n", "", "History B", "UndoManager B", "Ratio");
    std::printf ("%-13s %16.1f %16.1f %8.2f\n", "Memory", history, undoManager, history / undoManager);
    std::fflush (stdout);
}

} // namespace

int main (int argc, char** argv)
{
    return tov::benchmarks::runEditingBenchmarks<Element, Scene> (argc, argv, "TransactionBenchmark", theService, registerBenchmarks, printTables);
}
