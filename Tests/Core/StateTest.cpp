#include <Tov/Core/State.h>
#include <Tov/Core/StateCloner.h>
#include <Tov/Core/ClassExpression.h>
#include <gtest/gtest.h>
#include <lz4.h>
#include <limits>

using namespace tov;

namespace
{
    std::shared_ptr<State> makeInteger (int64_t value)     { return std::make_shared<State> (value); }
    std::shared_ptr<State> makeString (const char* text)   { return std::make_shared<State> (text); }

    std::shared_ptr<State> makeList (std::initializer_list<std::pair<const char*, std::shared_ptr<State>>> variables)
    {
        auto list = std::make_shared<State>();
        list->reserveVariables (variables.size());
        for (auto& variable : variables)
            list->addVariable (variable.first, variable.second);
        return list;
    }

    std::shared_ptr<State> makeObject (const char* className, uint64_t identifier,
                                       std::initializer_list<std::pair<const char*, std::shared_ptr<State>>> variables)
    {
        auto object = makeList (variables);
        object->setAtomicClassExpression (className);
        object->setUniqueIdentifier (UniqueIdentifier (identifier));
        return object;
    }
}

//==============================================================================
TEST (StateTest, TypeWordsFollowTheTypeOrder)
{
    const char* const words[] = { "void", "boolean", "integer", "real", "string", "weakPointer",
                                  "ownedPointer", "variables", "classExpression", "nativePointer", "buffer" };
    for (uint32_t i = 0; i < 11; ++i)
        EXPECT_EQ (State::typeToString ((StateType) i), words[i]);
}

TEST (StateTest, ConstructorsSetTypeAndValue)
{
    EXPECT_EQ (State().getType(), StateType::voidType);
    EXPECT_EQ (State (true).getType(), StateType::booleanType);
    EXPECT_TRUE (State (true).getBoolean());
    EXPECT_EQ (State ((int64_t) -7).getInteger(), -7);
    EXPECT_EQ (State ((juce::int64) 9).getInteger(), 9);
    EXPECT_EQ (State (12).getType(), StateType::integerType);
    EXPECT_EQ (State (0.25).getReal(), 0.25);
    EXPECT_EQ (State ("text").getString(), "text");
    EXPECT_EQ (State (juce::String ("text")).getType(), StateType::stringType);
    EXPECT_EQ (State (UniqueIdentifier (42)).getUniqueIdentifierValue(), UniqueIdentifier (42));
    EXPECT_EQ (State (UniqueIdentifier (42)).getType(), StateType::weakPointerType);

    const auto* expression = createAtomicClassExpression ("Foo");
    EXPECT_EQ (State (expression).getClassExpressionValue(), expression);
    EXPECT_EQ (State (expression).getType(), StateType::classExpressionType);

    char bytes[] = { 1, 2, 3 };
    State buffer (3, bytes, true);
    EXPECT_EQ (buffer.getType(), StateType::bufferType);
    EXPECT_EQ (buffer.getBuffer(), RawBuffer (3, bytes, false));
    EXPECT_TRUE (buffer.getBuffer().isDataOwned());
}

TEST (StateTest, CompressedConstructorHoldsTheDecompressedBytes)
{
    const char text[] = "abababababababababababababababababababab";
    char compressed[128];
    const int compressedSize = LZ4_compress_default (text, compressed, (int) sizeof (text), (int) sizeof (compressed));
    ASSERT_GT (compressedSize, 0);

    State state (compressed, (uint64_t) compressedSize, (uint64_t) sizeof (text));
    EXPECT_EQ (state.getType(), StateType::bufferType);
    EXPECT_EQ (state.getBuffer(), RawBuffer (sizeof (text), text, false));
}

TEST (StateTest, SettingTheSameTypeKeepsThePayload)
{
    State state ("abc");
    state.setAtomicClassExpression ("Foo");
    state.setUniqueIdentifier (UniqueIdentifier (5));
    const juce::String* payload = &state.getString();

    state.setString ("xyz");

    EXPECT_EQ (&state.getString(), payload);
    EXPECT_EQ (state.getString(), "xyz");
    EXPECT_EQ (state.getClassExpression(), createAtomicClassExpression ("Foo"));
    EXPECT_EQ (state.getUniqueIdentifier(), UniqueIdentifier (5));
}

TEST (StateTest, SettingAnotherTypeReplacesTheValueButNotTheNodeFields)
{
    State state ("abc");
    state.setAtomicClassExpression ("Foo");
    state.setVersionNumber (4);

    state.setReal (1.5);

    EXPECT_EQ (state.getType(), StateType::realType);
    EXPECT_EQ (state.getReal(), 1.5);
    EXPECT_EQ (state.getClassExpression(), createAtomicClassExpression ("Foo"));
    EXPECT_EQ (state.getVersionNumber(), 4u);

    state.setVoid();
    EXPECT_EQ (state.getType(), StateType::voidType);
    EXPECT_EQ (state.getVersionNumber(), 4u);
}

TEST (StateTest, AddVariableToAnIntegerDiscardsTheInteger)
{
    State state ((int64_t) 5);
    state.addVariable ("a", makeInteger (1));

    EXPECT_EQ (state.getType(), StateType::variablesType);
    EXPECT_EQ (state.getNumVariables(), 1u);
    EXPECT_EQ (state.toShortString(), "{a = 1}");
}

TEST (StateTest, AddVariableAtFrontAndUnnamed)
{
    State state;
    state.addVariable ("b", makeInteger (2));
    state.addVariable ("a", makeInteger (1), true);
    state.addVariable (makeInteger (3));

    EXPECT_EQ (state.toShortString(), "{a = 1, b = 2, 3}");
    EXPECT_EQ (state.getVariableName (2), "");
}

TEST (StateTest, FindVariableTakesTheFirstOfEqualNames)
{
    auto list = makeList ({ { "x", makeInteger (1) }, { "x", makeInteger (2) }, { "y", makeInteger (3) } });
    EXPECT_EQ (list->findVariable ("x"), 0);
    EXPECT_EQ (list->findVariable ("y"), 2);
    EXPECT_EQ (list->findVariable ("z"), -1);
    EXPECT_EQ (list->getVariableStateByName ("x")->getInteger(), 1);
    EXPECT_EQ (list->getVariableStateByName ("z"), nullptr);
    EXPECT_EQ (list->getVariableStateByNameRef ("y")->getInteger(), 3);
    EXPECT_EQ (list->getVariableStateByNameRef ("z"), nullptr);
}

TEST (StateTest, FindVariableOnAStringIsMinusOne)
{
    State state ("abc");
    EXPECT_EQ (state.findVariable ("abc"), -1);
    EXPECT_EQ (state.getNumVariables(), 0u);
}

TEST (StateTest, RemoveVariableKeepsOrderAndLeavesAnEmptyList)
{
    auto list = makeList ({ { "a", makeInteger (1) }, { "b", makeInteger (2) }, { "c", makeInteger (3) } });

    auto removed = list->removeVariable ("b");
    ASSERT_NE (removed, nullptr);
    EXPECT_EQ (removed->getInteger(), 2);
    EXPECT_EQ (list->toShortString(), "{a = 1, c = 3}");
    EXPECT_EQ (list->removeVariable ("b"), nullptr);

    list->removeVariable ((size_t) 0);
    list->removeVariable ((size_t) 0);
    EXPECT_EQ (list->getType(), StateType::variablesType);
    EXPECT_EQ (list->getNumVariables(), 0u);
}

TEST (StateTest, RemoveEmptyVariablesOfOnlyVoidsLeavesVoidWithItsClass)
{
    auto list = makeObject ("Foo", 7, { { "a", std::make_shared<State>() }, { "b", std::make_shared<State>() } });

    list->removeEmptyVariables();

    EXPECT_EQ (list->getType(), StateType::voidType);
    EXPECT_EQ (list->getClassExpression(), createAtomicClassExpression ("Foo"));
    EXPECT_EQ (list->getUniqueIdentifier(), UniqueIdentifier (7));
}

TEST (StateTest, RemoveEmptyVariablesActsOnOneLevelOnly)
{
    auto inner = makeList ({ { "v", std::make_shared<State>() } });
    auto list = makeList ({ { "a", std::make_shared<State>() }, { "b", makeInteger (2) }, { "c", inner } });

    list->removeEmptyVariables();

    EXPECT_EQ (list->toShortString(), "{b = 2, c = {v = void}}");
}

TEST (StateTest, CheckTypeNamesBothTypes)
{
    State state ("abc");
    juce::String error;
    EXPECT_TRUE (state.checkType (StateType::stringType, error));
    EXPECT_EQ (error, "");
    EXPECT_FALSE (state.checkType (StateType::integerType, error));
    EXPECT_EQ (error, "Wrong type: expected integer, found string (in \"abc\")");
}

TEST (StateTest, GetClassWithoutExpressionSaysSo)
{
    State state;
    juce::String error = "old";
    EXPECT_EQ (state.getClass (&error), nullptr);
    EXPECT_EQ (error, "no class expression");
}

//==============================================================================
TEST (StateTest, ShortStringOfEachType)
{
    EXPECT_EQ (State().toShortString(), "void");
    EXPECT_EQ (State (false).toShortString(), "false");
    EXPECT_EQ (State ((int64_t) -12).toShortString(), "-12");
    EXPECT_EQ (State ("a\"b\\c").toShortString(), "\"a\\\"b\\\\c\"");
    EXPECT_EQ (State (UniqueIdentifier (0x2a)).toShortString(), "-> @2a");
    EXPECT_EQ (State (UniqueIdentifier()).toShortString(), "-> nil");
    EXPECT_EQ (State (createAtomicClassExpression ("Foo")).toShortString(), "Foo");
    EXPECT_EQ (State ((const Object*) (uintptr_t) 0xbeef).toShortString(), "0xbeef");
    EXPECT_EQ (State (0, nullptr, false).toShortString(), "");

    State owned;
    owned.setOwnedPointer (makeInteger (1));
    EXPECT_EQ (owned.toShortString(), "=> 1");
    owned.setOwnedPointer (nullptr);
    EXPECT_EQ (owned.toShortString(), "=> <null>");

    State emptyList;
    emptyList.reserveVariables (0);
    EXPECT_EQ (emptyList.toShortString(), "{}");
}

TEST (StateTest, ShortStringDepthLimit)
{
    auto list = makeList ({ { "a", makeList ({ { "b", makeInteger (1) } }) }, { "c", makeList ({}) } });
    EXPECT_EQ (list->toShortString (0), "{...}");
    EXPECT_EQ (list->toShortString (1), "{a = {...}, c = {...}}");
    EXPECT_EQ (list->toShortString (2), "{a = {b = 1}, c = {}}");
    EXPECT_EQ (list->toString(), "{a = {b = 1}, c = {}}");

    State owned;
    owned.setOwnedPointer (list);
    EXPECT_EQ (owned.toShortString (0), "=> ...");
    EXPECT_EQ (owned.toShortString (1), "=> {...}");
}

TEST (StateTest, ShortStringOfReals)
{
    const double largest = std::numeric_limits<double>::max();
    EXPECT_EQ (State (2.5).toShortString(), "2.5");
    EXPECT_EQ (State (3.0).toShortString(), "3.");
    EXPECT_EQ (State (1e-13).toShortString(), "0.");
    EXPECT_EQ (State (-0.125).toShortString(), "-0.125");
    EXPECT_EQ (State (1.0 / 3.0).toShortString(), "0.333333333333");
    EXPECT_EQ (State (largest).toShortString(), "+oo");
    EXPECT_EQ (State (-largest).toShortString(), "-oo");
    EXPECT_EQ (State (std::numeric_limits<double>::infinity()).toShortString(), "0.0");
    EXPECT_EQ (State (std::numeric_limits<double>::quiet_NaN()).toShortString(), "0.0");
}

//==============================================================================
TEST (StateTest, EqualsComparesFieldsAndValues)
{
    auto a = makeObject ("Foo", 1, { { "x", makeInteger (1) }, { "s", makeString ("t") } });
    auto b = makeObject ("Foo", 1, { { "x", makeInteger (1) }, { "s", makeString ("t") } });
    EXPECT_TRUE (a->equals (*b));
    EXPECT_TRUE (*a == *b);

    b->setSource ("somewhere");
    EXPECT_TRUE (*a == *b);

    b->setUniqueIdentifier (UniqueIdentifier (2));
    EXPECT_TRUE (*a != *b);
    b->setUniqueIdentifier (UniqueIdentifier (1));

    b->setAtomicClassExpression ("Bar");
    EXPECT_FALSE (*a == *b);
    b->setAtomicClassExpression ("Foo");

    b->setVariableName (1, "t");
    EXPECT_FALSE (*a == *b);
    b->setVariableName (1, "s");

    b->getVariableStateRef (0).setInteger (2);
    EXPECT_FALSE (*a == *b);
}

TEST (StateTest, RealsCompareByBitPattern)
{
    EXPECT_FALSE (State (0.0) == State (-0.0));
    EXPECT_TRUE (State (std::numeric_limits<double>::quiet_NaN()) == State (std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE (State (1.0) == State ((int64_t) 1));
}

TEST (StateTest, SharedPointerEqualsHandlesNulls)
{
    EXPECT_TRUE (State::equals (std::shared_ptr<State>(), std::shared_ptr<State>()));
    EXPECT_FALSE (State::equals (makeInteger (1), std::shared_ptr<State>()));
    EXPECT_FALSE (State::equals (std::shared_ptr<State>(), makeInteger (1)));
    EXPECT_TRUE (State::equals (makeInteger (1), makeInteger (1)));
}

//==============================================================================
TEST (StateTest, HasherCombinesFnvOfLittleEndianBytes)
{
    StateHasher hasher;
    EXPECT_EQ (hasher.get(), 0u);
    hasher.pushVoid();
    EXPECT_EQ (hasher.get(), 0xed7562032edf812full);

    StateHasher zero, negativeZero;
    zero.pushReal (0.0);
    negativeZero.pushReal (-0.0);
    EXPECT_EQ (zero.get(), 0xa8c7f832c651b37eull);
    EXPECT_EQ (negativeZero.get(), zero.get());
}

TEST (StateTest, HashOfPlainValues)
{
    EXPECT_EQ (State().computeHash(), 0xe16294f3b2b17ef0ull);
    EXPECT_EQ (State (true).computeHash(), 0xa3543f39ac6bcf3aull);
    EXPECT_EQ (State ((int64_t) -1).computeHash(), 0x41e2dd78268dfd2bull);
    EXPECT_EQ (State ("abc").computeHash(), 0x7af1a46363ce8c72ull);
    EXPECT_EQ (makeList ({ { "a", makeInteger (1) } })->computeHash(), 0xad17b4c7f92fc75aull);
}

TEST (StateTest, VersionTakesPartInEqualityButNotInHash)
{
    auto a = makeObject ("Foo", 3, { { "x", makeInteger (1) } });
    auto b = makeObject ("Foo", 3, { { "x", makeInteger (1) } });
    b->setVersionNumber (2);

    EXPECT_FALSE (*a == *b);
    EXPECT_EQ (a->computeHash(), b->computeHash());
}

TEST (StateTest, BuffersOfDifferentContentHashTheSame)
{
    char first[] = { 1, 2 }, second[] = { 3, 4 };
    auto a = makeList ({ { "data", std::make_shared<State> (2, first, true) } });
    auto b = makeList ({ { "data", std::make_shared<State> (2, second, true) } });

    EXPECT_FALSE (*a == *b);
    EXPECT_EQ (a->computeHash(), b->computeHash());
}

TEST (StateTest, HashSeesClassesStringsAndOwnedTargetIdentity)
{
    EXPECT_NE (State ("a").computeHash(), State ("b").computeHash());

    State foo ((int64_t) 1), bar ((int64_t) 1);
    foo.setAtomicClassExpression ("Foo");
    bar.setAtomicClassExpression ("Bar");
    EXPECT_NE (foo.computeHash(), bar.computeHash());

    // An owned pointer contributes its target's identifier, never its content.
    auto first = makeObject ("Foo", 10, { { "x", makeInteger (1) } });
    auto second = makeObject ("Foo", 10, { { "x", makeInteger (2) } });
    auto third = makeObject ("Foo", 11, { { "x", makeInteger (1) } });
    State a, b, c;
    a.setOwnedPointer (first);
    b.setOwnedPointer (second);
    c.setOwnedPointer (third);
    EXPECT_EQ (a.computeHash(), b.computeHash());
    EXPECT_NE (a.computeHash(), c.computeHash());
}

TEST (StateTest, HashExclusionSkipsADirectVariableWithItsName)
{
    auto excluded = makeInteger (2);
    auto withExcluded = makeList ({ { "a", makeInteger (1) }, { "b", excluded } });
    auto without = makeList ({ { "a", makeInteger (1) } });

    EXPECT_EQ (withExcluded->computeHash (excluded.get()), without->computeHash());
    EXPECT_NE (withExcluded->computeHash(), without->computeHash());
    EXPECT_EQ (withExcluded->computeHash (withExcluded.get()), 0u);
}

TEST (StateTest, HashExclusionDoesNotReachDeeper)
{
    auto deep = makeInteger (2);
    auto tree = makeList ({ { "a", makeList ({ { "b", deep } }) } });
    EXPECT_EQ (tree->computeHash (deep.get()), tree->computeHash());
}

//==============================================================================
TEST (StateTest, CopyToIsShallow)
{
    auto shared = makeInteger (1);
    auto source = makeObject ("Foo", 9, { { "x", shared } });
    source->setVersionNumber (3);
    source->setSource ("file.txt");

    State copy;
    source->copyTo (copy);
    EXPECT_TRUE (copy == *source);
    EXPECT_EQ (copy.getSource(), "file.txt");

    shared->setInteger (5);
    EXPECT_EQ (copy.getVariableStateRef (0).getInteger(), 5);
    EXPECT_EQ (copy.getVariableState (0), shared);

    State assigned;
    assigned = *source;
    EXPECT_TRUE (assigned == *source);
    EXPECT_EQ (State (*source).getVariableState (0), shared);
}

TEST (StateTest, CopyToItselfChangesNothing)
{
    auto list = makeList ({ { "x", makeInteger (1) } });
    list->copyTo (*list);
    EXPECT_EQ (list->toShortString(), "{x = 1}");
}

TEST (StateTest, CopyToAnOwnerOfTheSource)
{
    // The list alone keeps its variable's state alive; copying that state over
    // the list must not read the state after the list has let it go.
    auto list = makeList ({ { "a", makeList ({ { "b", makeInteger (1) } }) } });
    std::weak_ptr<State> child = list->getVariableState (0);
    list->getVariableStateRef (0).copyTo (*list);

    EXPECT_TRUE (child.expired());
    EXPECT_EQ (list->toShortString(), "{b = 1}");
}

TEST (StateTest, RemoveEmptyVariablesKeepsNullStates)
{
    auto list = makeList ({ { "a", nullptr }, { "b", std::make_shared<State>() } });
    list->removeEmptyVariables();
    ASSERT_EQ (list->getNumVariables(), 1u);
    EXPECT_EQ (list->getVariableName (0), "a");
}

TEST (StateTest, CloneIsFullySeparate)
{
    auto source = makeObject ("Foo", 9, { { "x", makeInteger (1) }, { "s", makeString ("t") } });
    source->setSource ("origin");
    auto clone = source->clone (UniqueIdentifier());

    EXPECT_TRUE (*clone == *source);
    EXPECT_EQ (clone->getSource(), "origin");
    EXPECT_NE (clone->getVariableState (0), source->getVariableState (0));

    clone->getVariableStateRef (0).setInteger (5);
    EXPECT_EQ (source->getVariableStateRef (0).getInteger(), 1);
}

TEST (StateTest, CloneRemapsIdentifiersInsideTheTreeOnly)
{
    auto child = makeObject ("Bar", 0x2b, { { "x", makeInteger (1) } });
    auto owned = std::make_shared<State>();
    owned->setOwnedPointer (child);
    auto root = makeObject ("Foo", 0x2a, { { "child", owned },
                                           { "inside", std::make_shared<State> (UniqueIdentifier (0x2b)) },
                                           { "outside", std::make_shared<State> (UniqueIdentifier (0x99)) },
                                           { "none", std::make_shared<State> (UniqueIdentifier()) } });

    const UniqueIdentifier mask (0xf00);
    auto clone = root->clone (mask);

    EXPECT_EQ (clone->getUniqueIdentifier(), UniqueIdentifier (0xf2a));
    EXPECT_EQ (clone->getVariableStateRef (0).getOwnedPointer()->getUniqueIdentifier(), UniqueIdentifier (0xf2b));
    EXPECT_EQ (clone->getVariableStateRef (1).getUniqueIdentifierValue(), UniqueIdentifier (0xf2b));
    EXPECT_EQ (clone->getVariableStateRef (2).getUniqueIdentifierValue(), UniqueIdentifier (0x99));
    EXPECT_EQ (clone->getVariableStateRef (3).getUniqueIdentifierValue(), UniqueIdentifier());
    EXPECT_EQ (clone->getVariableStateRef (0).getUniqueIdentifier(), UniqueIdentifier());

    auto back = clone->clone (mask);
    EXPECT_TRUE (*back == *root);

    auto unchanged = root->clone (UniqueIdentifier());
    EXPECT_TRUE (*unchanged == *root);
    EXPECT_NE (unchanged->getVariableStateRef (0).getOwnedPointer(), child);
}

TEST (StateTest, CloneCopiesBuffers)
{
    char bytes[] = { 1, 2, 3 };
    State buffer (3, bytes, true);
    auto clone = buffer.clone (UniqueIdentifier (1));
    EXPECT_TRUE (*clone == buffer);
    EXPECT_NE (clone->getBuffer().getData(), buffer.getBuffer().getData());
}

TEST (StateTest, ClonerMaskDefaultsToNull)
{
    auto root = makeObject ("Foo", 5, { { "x", makeInteger (1) } });
    StateCloner cloner;
    EXPECT_TRUE (*cloner.clone (*root) == *root);
}

TEST (StateTest, ClearUniqueIdentifiersLeavesWeakPointers)
{
    auto child = makeObject ("Bar", 0x2b, {});
    auto owned = std::make_shared<State>();
    owned->setOwnedPointer (child);
    auto root = makeObject ("Foo", 0x2a, { { "child", owned }, { "ref", std::make_shared<State> (UniqueIdentifier (0x2b)) } });

    root->clearUniqueIdentifiers();

    EXPECT_EQ (root->getUniqueIdentifier(), UniqueIdentifier());
    EXPECT_EQ (child->getUniqueIdentifier(), UniqueIdentifier());
    EXPECT_EQ (root->getVariableStateRef (1).getUniqueIdentifierValue(), UniqueIdentifier (0x2b));
}

//==============================================================================
TEST (StateTest, StateMapOperatorAddsANullEntryAtTheEnd)
{
    StateMap map;
    EXPECT_TRUE (map.isEmpty());
    map["a"] = makeInteger (1);
    auto& added = map["b"];

    EXPECT_EQ (added, nullptr);
    EXPECT_EQ (map.size(), 2u);
    EXPECT_EQ (map.getStateName (1), "b");
    EXPECT_EQ (map.find ("a"), 0);
    EXPECT_EQ (map.find ("c"), -1);
    EXPECT_TRUE (map.isNotEmpty());
}

TEST (StateTest, StateMapAppendOverwritesInPlaceAndShares)
{
    StateMap map, other;
    map["a"] = makeInteger (1);
    map["b"] = makeInteger (2);
    auto replacement = makeInteger (20);
    other["c"] = makeInteger (3);
    other["b"] = replacement;

    map.append (other);

    ASSERT_EQ (map.size(), 3u);
    EXPECT_EQ (map.getStateName (0), "a");
    EXPECT_EQ (map.getStateName (1), "b");
    EXPECT_EQ (map.getState (1), replacement);
    EXPECT_EQ (map.getStateName (2), "c");
    EXPECT_EQ (map.getStateRef (2)->getInteger(), 3);
}

TEST (StateTest, StateMapRemove)
{
    StateMap map;
    map["a"] = makeInteger (1);
    map["b"] = makeInteger (2);
    map.remove ("x");
    EXPECT_EQ (map.size(), 2u);
    map.remove ("a");
    ASSERT_EQ (map.size(), 1u);
    EXPECT_EQ (map.getStateName (0), "b");
    map.clear();
    EXPECT_TRUE (map.isEmpty());
}
