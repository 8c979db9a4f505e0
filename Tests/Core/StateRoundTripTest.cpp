#include <Tov/Core/State.h>
#include <Tov/Core/ClassExpression.h>
#include <Tov/Core/StateParserCallback.h>
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

//==============================================================================
// Most texts are read at once without the parser's rules, which a callback
// turns back on: both ways must give the same tree and the same reports.
namespace
{
    struct PassingCallback : public StateParserCallback
    {
        bool stateParsed (State&) override { return true; }
    };

    /** The binary form of what a parse gives (null included), then its reports. */
    juce::String describeParse (const juce::String& text, bool followingTheRules)
    {
        RecordingExecutionContext context;
        PassingCallback callback;
        auto state = State::createFromStateString (context, text, "text", followingTheRules ? &callback : nullptr);
        juce::MemoryOutputStream description;
        State::toBinary (state.get(), description);
        auto result = juce::String::toHexString (description.getData(), (int) description.getDataSize());
        for (auto& error : context.errors)
            result += "\n" + error;
        return result;
    }

    /** The tree with what the shortcut does not take replaced: pointers, buffers,
        class values and native pointers by integers, other class expressions by atomic ones. */
    void makePlain (State& node)
    {
        if (auto* expression = node.getClassExpression())
            if (expression->getType() != ClassExpression::atomic)
                node.setAtomicClassExpression ("Plain");
        switch (node.getType())
        {
            case StateType::ownedPointerType:
            case StateType::weakPointerType:
            case StateType::bufferType:
            case StateType::classExpressionType:
            case StateType::nativePointerType:
                node.setInteger (7);
                break;
            default:
                break;
        }
        for (size_t i = 0; i < node.getNumVariables(); ++i)
            makePlain (node.getVariableStateRef (i));
    }

    juce::String mutate (juce::Random& random, const juce::String& text)
    {
        static const char* const pieces[] = { "{", "}", "(", ")", "=", ",", ":", "'", "\"", "\\", "@", "#", "-", ".", "e", " ", "\n", "\t",
                                              "[", "]", "void", "nil", "->", "=>", "1", "2.5", "Foo", "@2a", "#7" };
        std::string bytes (text.toRawUTF8());
        const auto at = (size_t) random.nextInt ((int) bytes.size() + 1);
        switch (random.nextInt (3))
        {
            case 0:  bytes.insert (at, pieces[random.nextInt ((int) std::size (pieces))]); break;
            case 1:  bytes.erase (at, 1); break;
            default: bytes.resize (at); break;
        }
        return juce::String::fromUTF8 (bytes.data(), (int) bytes.size());
    }
}

TEST (StateRoundTripTest, TextsReadTheSameWithAndWithoutTheShortcut)
{
    RandomTreeGenerator generator (4321);
    juce::Random random (4321);
    for (int i = 0; i < numTrees; ++i)
    {
        auto tree = generator.makeTree (5);
        if (i % 2 == 0)
            makePlain (*tree);
        const auto text = tree->saveToString();
        ASSERT_EQ (describeParse (text, false), describeParse (text, true)) << text;
        for (int m = 0; m < 8; ++m)
        {
            const auto mutated = mutate (random, text);
            ASSERT_EQ (describeParse (mutated, false), describeParse (mutated, true)) << mutated;
        }
    }
}

TEST (StateRoundTripTest, EdgeTextsReadTheSameWithAndWithoutTheShortcut)
{
    for (auto* text : { "", " ", "5", "5\n", "-", "{}", "{ }", "void", "{,}", "{a=1,}", "{a = 1", "{a = 1 b = 2}", "{a:1}", "{a : 1}",
                        "{a = @zz 1}", "{a = @2A 1}", "{a = nil 1}", "{a = nil}", "{a = #1x 2}", "{a = # 2}", "{a = @2a#3 1}",
                        "{a = #3 @2a 1}", "{'Foo(1) 2}", "{'Foo:bar 2}", "{'Foo (1) 2}", "'Foo", "'Foo 1", "' Foo 1", "{a = 'nil 1}",
                        "{a = 'Foo @2a #3 {b = 1}}", "{a = -> @2a}", "{a = => 1}", "{a = 0x1f}", "{a = [0 1]}", "{a = \"x}",
                        "{a = \"x\\\" y\"}", "{a = e.}", "{a = +oo}", "{a = 1.5e3}", "{a = --1.}", "{void = 1}", "{1 = 2}",
                        "{_a = 1}", "{a_b = 1}", "{a = True}", "{a = tru}", "{a = Foo}", "{a = 1}}", "{a = 1} x", "\n{a = {}}\n",
                        "{\ta\t=\t1\r\n}", "{a = 1,\n\n  b = {c = \"d\", e = 2.25}}" })
        EXPECT_EQ (describeParse (text, false), describeParse (text, true)) << text;
}

TEST (StateRoundTripTest, PlainTextsWithOtherSpacingReadTheSame)
{
    RandomTreeGenerator generator (777);
    for (int i = 0; i < numTrees / 3; ++i)
    {
        auto tree = generator.makeTree (4);
        makePlain (*tree);
        const auto text = tree->saveToString();
        for (auto& spaced : { text.replace (" = ", "=").replace (", ", ","), text.replace ("  ", "\t").replace ("\n", "\r\n"),
                              text.replace (" ", "   ").trimEnd(), text.replace (" = ", " =\n ") })
            ASSERT_EQ (describeParse (spaced, false), describeParse (spaced, true)) << spaced;
    }
}
