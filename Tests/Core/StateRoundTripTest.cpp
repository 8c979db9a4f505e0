#include <Tov/Core/State.h>
#include <Tov/Core/ClassExpression.h>
#include <Support/RecordingExecutionContext.h>
#include <gtest/gtest.h>
#include <limits>
#include <map>

using namespace tov;
using tov::testing::RecordingExecutionContext;

namespace
{
    /** Random State trees of every type, made of what the text form can carry:
        names that satisfy the name rule, class names that read back as class
        names, versions that fit in 31 bits, reals with at most 12 decimals and
        owned pointers with targets. Template arguments are plain values, since
        a class expression prints them through toShortString.
    */
    class RandomTreeGenerator
    {
    public:
        explicit RandomTreeGenerator (juce::int64 seed) : random (seed) {}

        std::shared_ptr<State> makeTree (int depth)
        {
            auto node = makeValue (depth, false);
            if (random.nextInt (10) < 4)
                node->setClassExpression (makeClassExpression (2));
            if (random.nextInt (10) < 3)
                node->setUniqueIdentifier (UniqueIdentifier ((uint64_t) random.nextInt64() | 1));
            if (random.nextInt (10) < 2)
                node->setVersionNumber ((uint64_t) random.nextInt (std::numeric_limits<int>::max() - 1) + 1);
            return node;
        }

    private:
        juce::Random random;

        template <class Item, size_t size>
        const Item& pick (const Item (&items)[size])
        {
            return items[(size_t) random.nextInt ((int) size)];
        }

        juce::String makeWord (const char* firstBytes, const char* otherBytes, int maximumLength)
        {
            juce::String word = juce::String::charToString ((juce::juce_wchar) firstBytes[random.nextInt ((int) strlen (firstBytes))]);
            for (int i = random.nextInt (maximumLength); --i >= 0;)
                word += juce::String::charToString ((juce::juce_wchar) otherBytes[random.nextInt ((int) strlen (otherBytes))]);
            return word;
        }

        juce::String makeVariableName()
        {
            return makeWord ("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_",
                             "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789", 8);
        }

        // No "e" first, so that no class name looks like a real; the words that
        // stand for values are left out.
        juce::String makeClassName()
        {
            for (;;)
            {
                auto name = makeWord ("abcdfghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ",
                                      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.#@'\"-+*/!?<>", 10);
                if (! juce::StringArray ({ "nil", "void", "true", "false", "True", "False" }).contains (name))
                    return name;
            }
        }

        // Identifiers end at blanks, commas and braces but not at ")", so an
        // argument list cannot end in a weak pointer: "Foo(-> @2a)" does not read back.
        static bool endsInWeakPointer (const State& value)
        {
            if (value.getType() == StateType::ownedPointerType)
                return endsInWeakPointer (*value.getOwnedPointer());
            return value.getType() == StateType::weakPointerType;
        }

        std::shared_ptr<State> makeTemplateArguments (int depth)
        {
            for (;;)
                if (auto arguments = makeValue (depth, true); ! endsInWeakPointer (*arguments))
                    return arguments;
        }

        const ClassExpression* makeClassExpression (int depth)
        {
            const int kind = depth > 0 ? random.nextInt (20) : 0;
            if (kind >= 15)
                return createTemplateClassExpression (makeClassName(), makeTemplateArguments (depth - 1));
            if (kind >= 12)
                return createClassParameterExpression (makeClassExpression (depth - 1), makeClassName());
            return createAtomicClassExpression (makeClassName());
        }

        juce::String makeString()
        {
            static const char* const pieces[] = { "a", "Z", "7", " ", "\"", "\\", "\n", "\r", "\t", ",", "{", "}", "(", ")",
                                                  "=", "'", "->", "=>", "[0 4]", "\xc3\xa9", "\xe2\x82\xac", "\xf0\x9d\x84\x9e" };
            juce::String text;
            for (int i = random.nextInt (12); --i >= 0;)
                text += juce::String::fromUTF8 (pick (pieces));
            return text;
        }

        // Values with an exact decimal form of at most 12 decimals, and the infinities.
        double makeReal()
        {
            switch (random.nextInt (6))
            {
                case 0:  return random.nextBool() ? 0.0 : -0.0;
                case 1:  return (random.nextBool() ? 1.0 : -1.0) * std::numeric_limits<double>::max();
                case 2:  return (double) (random.nextInt64() % 1000000000000000ll);
                default: return (double) (random.nextInt (2000001) - 1000000) / (double) (1 << random.nextInt (13));
            }
        }

        int64_t makeInteger()
        {
            switch (random.nextInt (4))
            {
                case 0:  return std::numeric_limits<int64_t>::min();
                case 1:  return std::numeric_limits<int64_t>::max();
                case 2:  return random.nextInt (2001) - 1000;
                default: return random.nextInt64();
            }
        }

        std::shared_ptr<State> makeList (int depth, bool plain)
        {
            auto list = std::make_shared<State>();
            for (int i = 1 + random.nextInt (5); --i >= 0;)
            {
                const auto name = random.nextInt (10) < 3 ? juce::String() : makeVariableName();
                list->addVariable (name, plain ? makeValue (depth - 1, true) : makeTree (depth - 1));
            }
            return list;
        }

        // A plain value carries nothing that toShortString leaves out: no class,
        // identifier or version on its nodes, no buffer and no native pointer.
        std::shared_ptr<State> makeValue (int depth, bool plain)
        {
            auto node = std::make_shared<State>();
            const int numTypes = plain ? 9 : 11;
            // Lists are favoured, so that trees branch out.
            const auto type = depth > 0 && random.nextInt (10) < 4 ? StateType::variablesType
                                                                    : (StateType) random.nextInt (depth > 0 ? numTypes : 6);
            switch (type)
            {
                case StateType::voidType:            break;
                case StateType::booleanType:         node->setBoolean (random.nextBool()); break;
                case StateType::integerType:         node->setInteger (makeInteger()); break;
                case StateType::realType:            node->setReal (makeReal()); break;
                case StateType::stringType:          node->setString (makeString()); break;
                case StateType::weakPointerType:     node->setUniqueIdentifierValue (UniqueIdentifier (random.nextBool() ? 0 : (uint64_t) random.nextInt64())); break;
                case StateType::ownedPointerType:    node->setOwnedPointer (plain ? makeValue (depth - 1, true) : makeTree (depth - 1)); break;
                case StateType::variablesType:       return makeList (depth, plain);
                case StateType::classExpressionType: node->setClassExpressionValue (makeClassExpression (depth - 1)); break;
                case StateType::nativePointerType:   node->setNativePointer ((const Object*) (uintptr_t) (random.nextInt64() | 8)); break;
                case StateType::bufferType:
                {
                    juce::MemoryBlock bytes ((size_t) random.nextInt (17));
                    random.fillBitsRandomly (bytes.getData(), bytes.getSize());
                    node->setBuffer (bytes.getSize(), bytes.getData(), true);
                    break;
                }
            }
            return node;
        }
    };

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
