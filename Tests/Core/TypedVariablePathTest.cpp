#include "Pointer/PointerTestSupport.h"

using namespace tov;
using namespace tov::test;

TEST (VariablePathTypedTest, ARootAloneIsOneNodeOfItsClass)
{
    ensurePointerTestLibrary();
    auto node = createOwned<Node>();
    TypedVariablePath path;
    ASSERT_TRUE (path.buildPath (node.get(), node.get()));
    ASSERT_EQ (path.getPath().size(), 1u);
    EXPECT_EQ (path.getPath()[0].objectClass, &Node::staticClass);
    EXPECT_EQ (path.findObjectFromPath (node.get()), node.get());
}

TEST (VariablePathTypedTest, StepsThroughMembersAndOwnedPointers)
{
    ensurePointerTestLibrary();
    auto node = createOwned<Node>();
    node->child.set (create<Node>());
    TypedVariablePath path;
    ASSERT_TRUE (path.buildPath (node.get(), &node->child->value));
    ASSERT_EQ (path.getPath().size(), 3u);
    EXPECT_EQ (path.getPath()[0].name, "child");
    EXPECT_EQ (path.getPath()[1].name, "");
    EXPECT_EQ (path.getPath()[1].objectClass, &Node::staticClass);
    EXPECT_EQ (path.getPath()[2].name, "value");

    auto other = createOwned<Node>();
    other->child.set (create<Node>());
    EXPECT_EQ (path.findObjectFromPath (other.get()), &other->child->value);
}

TEST (VariablePathTypedTest, AStepOfAnotherClassFindsNothing)
{
    ensurePointerTestLibrary();
    auto node = createOwned<Node>();
    node->child.set (create<Node>());
    TypedVariablePath path;
    ASSERT_TRUE (path.buildPath (node.get(), &node->child->value));
    auto other = createOwned<Node>();
    EXPECT_EQ (path.findObjectFromPath (other.get()), nullptr);
}

TEST (VariablePathTypedTest, AnObjectOutsideTheRootCannotBeNamed)
{
    ensurePointerTestLibrary();
    auto node = createOwned<Node>();
    auto stranger = createOwned<Node>();
    TypedVariablePath path;
    EXPECT_FALSE (path.buildPath (node.get(), stranger.get()));
}
