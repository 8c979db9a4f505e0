#include "AtomicTestSupport.h"

using namespace tov;
using namespace tov::test;

TEST (VoidTest, HoldsNothingAndSavesNothing)
{
    Void nothing;
    EXPECT_EQ (nothing.toString(), "void");
    EXPECT_EQ (nothing.makeState (false)->getType(), StateType::voidType);
    EXPECT_TRUE (nothing.equals (Void()));
}

TEST (VoidTest, TakesAnyStateWithoutComplaint)
{
    Void nothing;
    const auto outcome = loadFromState (nothing, std::make_shared<State> ("anything"));
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
}

TEST (VoidTest, IsTheClassNamedVoid)
{
    // Classes fall back to it by name for members whose class cannot be found.
    EXPECT_EQ (getClass ("Void"), &Void::staticClass);
}
