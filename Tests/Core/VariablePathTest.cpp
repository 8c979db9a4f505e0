#include "Pointer/PointerTestSupport.h"

using namespace tov;
using namespace tov::test;

TEST (VariablePathTest, ADoubledSeparatorFailsAndAddsNothing)
{
    VariablePath path;
    EXPECT_FALSE (path.addChildPath ("a..b"));
    EXPECT_TRUE (path.isEmpty());
    EXPECT_FALSE (path.isDereferencingPointers());
}

TEST (VariablePathTest, StarsSetBothFlags)
{
    VariablePath path;
    EXPECT_TRUE (path.addChildPath ("*a.b*"));
    EXPECT_TRUE (path.isDereferencingPointers());
    EXPECT_TRUE (path.isDereferencingLast());
    EXPECT_EQ (path.getNames(), (std::vector<juce::String> { "a", "b" }));
    EXPECT_EQ (path.toString(), "*a.b*");
}

TEST (VariablePathTest, AnEmptyTextIsAnError)
{
    VariablePath path;
    EXPECT_FALSE (path.addChildPath (""));
    EXPECT_TRUE (path.isEmpty());
}

TEST (VariablePathTest, WithoutSeparatorsATextOnlyAsksForDereferencing)
{
    VariablePath path;
    EXPECT_TRUE (path.addChildPath ("*gain", {}));
    EXPECT_TRUE (path.isDereferencingPointers());
    EXPECT_TRUE (path.isEmpty());
}

TEST (VariablePathTest, QuotesKeepSeparatorsInsideAName)
{
    VariablePath path;
    EXPECT_TRUE (path.addChildPath ("track.'a.b'", ".", "'"));
    EXPECT_EQ (path.size(), 2u);
}

TEST (VariablePathTest, FindsAMemberOfAMember)
{
    ensurePointerTestLibrary();
    auto node = createOwned<Node>();
    VariablePath path;
    path.addChildPath ("child");
    bool changed = true;
    EXPECT_EQ (path.getChildObject (node.get(), &changed), &node->child);
    EXPECT_FALSE (changed);
}

TEST (VariablePathTest, DereferencesOwnedPointersOnTheWay)
{
    ensurePointerTestLibrary();
    auto node = createOwned<Node>();
    node->child.set (create<Node>());
    VariablePath path;
    path.addChildPath ("*child.value");
    bool changed = false;
    EXPECT_EQ (path.getChildObject (node.get(), &changed), &node->child->value);
    EXPECT_TRUE (changed);
}

TEST (VariablePathTest, AnEmptyPointerOnTheWayCannotBeDereferenced)
{
    ensurePointerTestLibrary();
    auto node = createOwned<Node>();
    VariablePath path;
    path.addChildPath ("*child.value");
    juce::String reason;
    EXPECT_EQ (path.getChildObject (node.get(), nullptr, &reason), nullptr);
    EXPECT_EQ (reason, "Could not dereference variable value");
}

TEST (VariablePathTest, AnUnknownNameIsReported)
{
    ensurePointerTestLibrary();
    auto node = createOwned<Node>();
    VariablePath path;
    path.addChildPath ("colour");
    juce::String reason;
    EXPECT_EQ (path.getChildObject (node.get(), nullptr, &reason), nullptr);
    EXPECT_EQ (reason, "Could not find variable colour");
}

TEST (VariablePathTest, ClimbsFromAnEmbeddedVariableToItsRoot)
{
    ensurePointerTestLibrary();
    auto node = createOwned<Node>();
    node->child.set (create<Node>());
    VariablePath path;
    EXPECT_EQ (path.setFromChildObject (&node->child->value), node->child.get());
    EXPECT_EQ (path.toString(), "value");
    EXPECT_EQ (path.setFromChildObject (node.get()), node.get());
    EXPECT_TRUE (path.isEmpty());
}

TEST (VariablePathTest, ComparesNamesAndFlags)
{
    VariablePath a, b;
    a.addChildPath ("x.y");
    b.addChildPath ("x.y*");
    EXPECT_FALSE (a == b);
    EXPECT_TRUE (a < b);
    b.clear();
    b.addChildPath ("x.y");
    EXPECT_TRUE (a == b);
}

//==============================================================================
namespace
{
std::shared_ptr<tov::State> parseState (const juce::String& text)
{
    tov::ExecutionContext context;
    return tov::State::createFromStateString (context, text, {});
}

tov::VariablePath pathOf (const juce::String& text)
{
    tov::VariablePath path;
    path.addChildPath (text);
    return path;
}
} // namespace

TEST (VariablePathTest, SetValueToChildStateReplacesTheVariableInCopiesOfTheNodesOnTheWay)
{
    auto original = parseState ("{frame = {width = 1, height = 2}, name = \"a\"}");
    auto root = original;
    ASSERT_TRUE (tov::VariablePath::setValueToChildState (pathOf ("frame.height"), root, std::make_shared<tov::State> (5)));
    EXPECT_EQ (root->toString(), "{frame = {width = 1, height = 5}, name = \"a\"}");
    EXPECT_EQ (original->toString(), "{frame = {width = 1, height = 2}, name = \"a\"}");
    EXPECT_NE (root.get(), original.get());
    EXPECT_EQ (root->getVariableState (1).get(), original->getVariableState (1).get());
}

TEST (VariablePathTest, SetValueToChildStateFailsOnAMissingNameAPlainValueOrDereferencing)
{
    auto original = parseState ("{frame = {width = 1}, name = \"a\"}");
    auto root = original;
    const auto value = std::make_shared<tov::State> (5);
    EXPECT_FALSE (tov::VariablePath::setValueToChildState (pathOf ("frame.depth"), root, value));
    EXPECT_FALSE (tov::VariablePath::setValueToChildState (pathOf ("name.length"), root, value));
    EXPECT_FALSE (tov::VariablePath::setValueToChildState (pathOf ("*frame.width"), root, value));
    EXPECT_FALSE (tov::VariablePath::setValueToChildState (tov::VariablePath(), root, value));
    EXPECT_EQ (root.get(), original.get());
}
