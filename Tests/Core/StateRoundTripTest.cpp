#include <Tov/Core/State.h>
#include <Tov/Core/ClassExpression.h>
#include <Support/RandomTreeGenerator.h>
#include <Support/RecordingExecutionContext.h>
#include <gtest/gtest.h>
#include <limits>
#include <map>

using namespace tov;
using tov::testing::RandomTreeGenerator;
using tov::testing::RecordingExecutionContext;

namespace
{

    /** What a tree reads back as: native pointers mean nothing outside their
        process and read back as void; buffers are empty without a binary stream. */
    std::shared_ptr<State> makeExpected (const State& tree, bool withBuffers)
    {
        auto expected = tree.clone (UniqueIdentifier());
        std::function<void (State&)> normalise = [&] (State& node)
        {
            if (node.getType() == StateType::nativePointerType)
                node.setVoid();
            else if (node.getType() == StateType::bufferType && ! withBuffers)
                node.setBuffer (RawBuffer());
            else if (node.getType() == StateType::ownedPointerType)
                normalise (*node.getOwnedPointer());
            for (size_t i = 0; i < node.getNumVariables(); ++i)
                normalise (node.getVariableStateRef (i));
        };
        normalise (*expected);
        return expected;
    }

    void countTypes (const State& node, std::map<StateType, int>& counts, int& prefixes, int& templates, int& parameters)
    {
        ++counts[node.getType()];
        if (auto* expression = node.getClassExpression())
        {
            ++prefixes;
            templates += expression->getType() == ClassExpression::templateApplication ? 1 : 0;
            parameters += expression->getType() == ClassExpression::classParameter ? 1 : 0;
        }
        if (node.getType() == StateType::ownedPointerType)
            countTypes (*node.getOwnedPointer(), counts, prefixes, templates, parameters);
        for (size_t i = 0; i < node.getNumVariables(); ++i)
            countTypes (node.getVariableStateRef (i), counts, prefixes, templates, parameters);
    }

    constexpr int numTrees = 1500;
}

TEST (StateRoundTripTest, GeneratedTreesCoverEveryType)
{
    RandomTreeGenerator generator (1234);
    std::map<StateType, int> counts;
    int prefixes = 0, templates = 0, parameters = 0;
    for (int i = 0; i < numTrees; ++i)
        countTypes (*generator.makeTree (5), counts, prefixes, templates, parameters);

    for (uint32_t type = 0; type < 11; ++type)
        EXPECT_GT (counts[(StateType) type], 100) << State::typeToString ((StateType) type);
    EXPECT_GT (prefixes, 500);
    EXPECT_GT (templates, 100);
    EXPECT_GT (parameters, 100);
}

TEST (StateRoundTripTest, TextReadsBackAsTheTree)
{
    RandomTreeGenerator generator (1234);
    for (int i = 0; i < numTrees; ++i)
    {
        auto tree = generator.makeTree (5);
        const auto text = tree->saveToString();

        RecordingExecutionContext context;
        auto reread = State::createFromStateString (context, text, "tree " + juce::String (i));
        ASSERT_NE (reread, nullptr) << text << (context.errors.empty() ? juce::String() : context.errors[0]);
        EXPECT_TRUE (context.errors.empty());

        auto expected = makeExpected (*tree, false);
        ASSERT_TRUE (*reread == *expected) << text << "\nread back as\n" << reread->saveToString();
        EXPECT_EQ (reread->computeHash(), expected->computeHash());
        EXPECT_EQ (tree->saveToString(), text);
    }
}

TEST (StateRoundTripTest, TextAndBinaryReadBackWithBuffersAndPrintTheSame)
{
    RandomTreeGenerator generator (1234);
    for (int i = 0; i < numTrees; ++i)
    {
        auto tree = generator.makeTree (5);
        juce::MemoryOutputStream text, binary;
        tree->print (text, binary);

        RecordingExecutionContext context;
        juce::MemoryInputStream textInput (text.getData(), text.getDataSize(), false);
        juce::MemoryInputStream binaryInput (binary.getData(), binary.getDataSize(), false);
        auto reread = State::parse (context, textInput, binaryInput, "tree " + juce::String (i));
        ASSERT_NE (reread, nullptr) << text.toUTF8();
        auto expected = makeExpected (*tree, true);
        ASSERT_TRUE (*reread == *expected) << text.toUTF8();

        // Native pointers aside (they read back as void), the text is printed again as it was.
        juce::MemoryOutputStream secondText, secondBinary, expectedText, expectedBinary;
        reread->print (secondText, secondBinary);
        expected->print (expectedText, expectedBinary);
        EXPECT_EQ (secondText.toUTF8(), expectedText.toUTF8());
        EXPECT_TRUE (secondBinary.getMemoryBlock() == binary.getMemoryBlock());
        if (! text.toUTF8().contains ("0x"))
            EXPECT_EQ (secondText.toUTF8(), text.toUTF8());
    }
}

TEST (StateRoundTripTest, ClassExpressionTextsReadBackAsTheSameExpression)
{
    RandomTreeGenerator generator (99);
    int checked = 0;
    for (int i = 0; i < numTrees; ++i)
    {
        auto tree = generator.makeTree (3);
        if (auto* expression = tree->getClassExpression())
        {
            juce::String error;
            EXPECT_EQ (createClassExpressionFromString (expression->toString(), &error), expression) << expression->toString();
            EXPECT_EQ (error, "");
            ++checked;
        }
    }
    EXPECT_GT (checked, 300);
}
