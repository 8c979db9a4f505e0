#pragma once

#include <Tov/Core/State.h>
#include <Tov/Core/ClassExpression.h>
#include <cstring>
#include <limits>

namespace tov::testing
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

/** Calls visit on every node of the tree, owned pointer targets and variables included. */
template <class Visitor>
void forEachNode (State& node, Visitor&& visit)
{
    visit (node);
    if (node.getType() == StateType::ownedPointerType && node.getOwnedPointer() != nullptr)
        forEachNode (*node.getOwnedPointer(), visit);
    for (size_t i = 0; i < node.getNumVariables(); ++i)
        forEachNode (node.getVariableStateRef (i), visit);
}

} // namespace tov::testing
