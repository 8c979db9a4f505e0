#include <Tov/Core/State.h>
#include <Tov/Core/Class.h>
#include <Tov/Core/ClassExpression.h>
#include <Support/RandomTreeGenerator.h>
#include <Support/TestValues.h>
#include <gtest/gtest.h>
#include <atomic>
#include <thread>
#include <vector>

// Nodes handed on are read by several threads at once, and some const reads
// fill caches (the classes of a node and of its value). Several threads read
// one tree whose caches are empty and must see what one thread sees.
using namespace tov;
using tov::testing::RandomTreeGenerator;

namespace
{
/** Everything a reader can learn from a tree without changing it. */
struct Reading
{
    std::vector<Class*> nodeClasses, valueClasses;
    juce::StringArray classNames, errors;
    size_t numClassesInVectors = 0;
    juce::String text, shortText;
    juce::MemoryBlock printedText, printedBinary, binary;
    uint64_t hash = 0;
    bool equalsTwin = false;

    bool operator== (const Reading& other) const
    {
        return nodeClasses == other.nodeClasses && valueClasses == other.valueClasses && classNames == other.classNames
            && errors == other.errors && numClassesInVectors == other.numClassesInVectors && text == other.text
            && shortText == other.shortText && printedText == other.printedText && printedBinary == other.printedBinary
            && binary == other.binary && hash == other.hash && equalsTwin == other.equalsTwin;
    }
};

template <class Visitor>
void forEachNode (const State& node, Visitor&& visit)
{
    visit (node);
    if (node.getType() == StateType::ownedPointerType && node.getOwnedPointer() != nullptr)
        forEachNode (*node.getOwnedPointer(), visit);
    for (size_t i = 0; i < node.getNumVariables(); ++i)
        forEachNode (node.getVariableStateRef (i), visit);
}

// The names are read through the classes, so that a class the registry
// generated for another thread is used, not only compared.
void readClasses (const State& tree, Reading& reading)
{
    forEachNode (tree, [&] (const State& node)
    {
        juce::String error;
        auto* nodeClass = node.getClass (&error);
        auto* valueClass = node.getClassValue();
        reading.nodeClasses.push_back (nodeClass);
        reading.valueClasses.push_back (valueClass);
        reading.errors.add (error);
        reading.classNames.add (nodeClass != nullptr ? nodeClass->getName() : "-");
        reading.classNames.add (valueClass != nullptr ? valueClass->getName() : "-");
        reading.numClassesInVectors += node.getClassVector().size();
    });
}

Reading read (const State& tree, const State& twin)
{
    Reading reading;
    readClasses (tree, reading);
    reading.text = tree.saveToString();
    reading.shortText = tree.toShortString (3);
    juce::MemoryOutputStream text (reading.printedText, false), binary (reading.printedBinary, false);
    tree.print (text, binary);
    juce::MemoryOutputStream binaryForm (reading.binary, false);
    EXPECT_TRUE (tree.toBinary (binaryForm));
    reading.hash = tree.computeHash();
    reading.equalsTwin = tree.equals (twin);
    return reading;
}

std::shared_ptr<State> makeNode (const ClassExpression* nodeClass, std::shared_ptr<State> value)
{
    value->setClassExpression (nodeClass);
    return value;
}

std::shared_ptr<State> makeClassValue (const ClassExpression* valueClass)
{
    auto node = std::make_shared<State>();
    node->setClassExpressionValue (valueClass);
    return node;
}

/** Nodes of declared, parameter and generated classes, a class that is not
    there, class values, and a random tree below for every type of value.
    The enumeration is new to the registry, which generates it while the
    threads read. */
std::shared_ptr<State> makeTree (const juce::String& enumerationName, juce::int64 seed, int depth)
{
    const auto* shape = createAtomicClassExpression ("Shape");
    const auto* rectangle = createAtomicClassExpression ("Rectangle");
    const auto* integer = createAtomicClassExpression ("TestInteger");
    const auto* interpolationKey = createClassParameterExpression (shape, "interpolationKey");
    const auto* missing = createAtomicClassExpression ("NoSuchClassAnywhere");
    const auto* enumeration = createClassExpressionFromString (enumerationName, nullptr);
    EXPECT_NE (enumeration, nullptr);

    auto root = std::make_shared<State>();
    for (int i = 0; i < 8; ++i)
    {
        auto list = std::make_shared<State>();
        list->addVariable ("width", makeNode (integer, std::make_shared<State> (i)));
        list->addVariable ("kind", makeClassValue (i % 2 == 0 ? enumeration : rectangle));
        list->addVariable ("key", makeNode (interpolationKey, std::make_shared<State> ("text")));
        list->addVariable ("lost", makeNode (missing, makeClassValue (missing)));
        list->addVariable ("value", makeNode (enumeration, std::make_shared<State> (i % 3)));
        list->addVariable ("random", RandomTreeGenerator (seed + i).makeTree (depth));
        root->addVariable ("shape" + juce::String (i), makeNode (i % 2 == 0 ? shape : rectangle, list));
    }
    root->setClassExpression (shape);
    return root;
}

/** Starts the readers together, so that their first reads race to fill the caches. */
std::vector<Reading> readConcurrently (const State& tree, const State& twin, int numThreads, int numReadsPerThread)
{
    std::vector<std::vector<Reading>> readings ((size_t) numThreads);
    std::atomic<int> numWaiting { numThreads };
    std::vector<std::thread> threads;
    for (int t = 0; t < numThreads; ++t)
        threads.emplace_back ([&, t]
        {
            --numWaiting;
            while (numWaiting.load() > 0)
                std::this_thread::yield();
            for (int i = 0; i < numReadsPerThread; ++i)
                readings[(size_t) t].push_back (read (tree, twin));
        });
    for (auto& thread : threads)
        thread.join();

    std::vector<Reading> all;
    for (auto& ofOneThread : readings)
        all.insert (all.end(), ofOneThread.begin(), ofOneThread.end());
    return all;
}

juce::String makeNewEnumerationName()
{
    static std::atomic<int> counter { 0 };
    const auto prefix = "threads" + juce::String (++counter);
    return "Enumeration({" + prefix + "Low, " + prefix + "Middle, " + prefix + "High})";
}

// The readers go first, on a tree whose caches are empty and whose enumeration
// does not exist yet; then one thread reads an identical tree.
void expectConcurrentReadsAsOneThreadReads (juce::int64 seed, int depth, int numThreads, int numReadsPerThread)
{
    const auto enumerationName = makeNewEnumerationName();
    const auto shared = makeTree (enumerationName, seed, depth);
    const auto twin = makeTree (enumerationName, seed, depth);
    const auto readings = readConcurrently (*shared, *twin, numThreads, numReadsPerThread);

    const auto reference = makeTree (enumerationName, seed, depth);
    const auto expected = read (*reference, *twin);
    ASSERT_EQ (readings.size(), (size_t) (numThreads * numReadsPerThread));
    for (auto& reading : readings)
        ASSERT_TRUE (reading == expected) << "seed " << seed;
}
}

TEST (StateTest, ThreadsReadingOneTreeSeeWhatOneThreadSees)
{
    const auto enumerationName = makeNewEnumerationName();
    const auto shared = makeTree (enumerationName, 1, 4);
    const auto twin = makeTree (enumerationName, 1, 4);
    const auto readings = readConcurrently (*shared, *twin, 4, 2);

    // The reference shows what the readings hold: every kind of class was found.
    const auto reference = read (*makeTree (enumerationName, 1, 4), *twin);
    const auto& root = *shared;
    EXPECT_EQ (root.getClass(), &test::Shape::staticClass);
    const auto& first = root.getVariableStateRef (0);
    EXPECT_EQ (first.getVariableStateRef (0).getClass(), &test::TestInteger::staticClass);
    EXPECT_EQ (first.getVariableStateRef (1).getClassValue()->getName(), enumerationName);
    EXPECT_EQ (first.getVariableStateRef (2).getClass(), &test::Shape::staticClass);
    juce::String error;
    EXPECT_EQ (first.getVariableStateRef (3).getClass (&error), nullptr);
    EXPECT_EQ (error, "Could not find class \"NoSuchClassAnywhere\"");
    EXPECT_EQ (first.getVariableStateRef (4).getClass(), first.getVariableStateRef (1).getClassValue());
    EXPECT_EQ (root.getVariableStateRef (1).getVariableStateRef (1).getClassValue(), &test::Rectangle::staticClass);
    EXPECT_TRUE (reference.equalsTwin);

    ASSERT_EQ (readings.size(), 8u);
    for (auto& reading : readings)
        EXPECT_TRUE (reading == reference);
}

TEST (StateTest, ThreadsReadingRandomTreesSeeWhatOneThreadSees)
{
    for (juce::int64 seed = 100; seed < 400; seed += 10)
        expectConcurrentReadsAsOneThreadReads (seed, 6, 8, 4);
}
