#include "AtomicTestSupport.h"
#include <Tov/Core/ClassExpression.h>

using namespace tov;
using namespace tov::test;

TEST (ClassObjectTest, ToStringNamesTheClass)
{
    EXPECT_EQ (ClassObject().toString(), "< None >");
    EXPECT_EQ (ClassObject (&Integer::staticClass).toString(), "Integer");
}

TEST (ClassObjectTest, SavesAClassExpression)
{
    ClassObject source (&Decibel::staticClass), target;
    auto state = source.makeState (false);
    EXPECT_EQ (state->getType(), StateType::classExpressionType);
    EXPECT_EQ (state->toShortString(), "Decibel");
    EXPECT_TRUE (saveAndLoad (source, target).result);
    EXPECT_EQ (target.get(), &Decibel::staticClass);
}

TEST (ClassObjectTest, NoClassSavesVoidAndLoadsBack)
{
    ClassObject none, target (&Integer::staticClass);
    EXPECT_EQ (none.makeState (false)->getType(), StateType::voidType);
    EXPECT_TRUE (saveAndLoad (none, target).result);
    EXPECT_EQ (target.get(), nullptr);
}

TEST (ClassObjectTest, LoadsClassNames)
{
    ClassObject classObject;
    EXPECT_TRUE (loadFromState (classObject, std::make_shared<State> ("Real")).result);
    EXPECT_EQ (classObject.get(), &Real::staticClass);
    EXPECT_TRUE (loadFromState (classObject, std::make_shared<State> ("")).result);
    EXPECT_EQ (classObject.get(), nullptr);
}

TEST (ClassObjectTest, AnUnknownNameGivesNone)
{
    ClassObject classObject (&Real::staticClass);
    const auto outcome = loadFromState (classObject, std::make_shared<State> ("Unicorn"));
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_EQ (classObject.get(), nullptr);
}

TEST (ClassObjectTest, OtherStatesFail)
{
    ClassObject classObject (&Real::staticClass);
    const auto outcome = loadFromState (classObject, std::make_shared<State> (3));
    EXPECT_FALSE (outcome.result);
    EXPECT_TRUE (outcome.messages.startsWith ("Error: Wrong type: expected classExpression, found integer")) << outcome.messages;
    EXPECT_EQ (classObject.get(), &Real::staticClass);
}

TEST (ClassObjectTest, ResetAndCompare)
{
    ClassObject a (&Real::staticClass), b (&Real::staticClass);
    EXPECT_TRUE (a.equals (b));
    b.reset();
    EXPECT_FALSE (a.equals (b));
    a.copyTo (b);
    EXPECT_EQ (b.get(), &Real::staticClass);
}
