#include "SelectionTestSupport.h"
#include <Tov/Core/ClassRegistry.h>

using namespace tov;
using namespace tov::test;

namespace
{
class SelectionTest : public SetlistTest {};
} // namespace

TEST_F (SelectionTest, ItsClassIsTheGeneratedSelectionOfItsTarget)
{
    Selection<Track> selection;
    auto* selectionClass = selection.getClass();
    EXPECT_EQ (selectionClass->getName(), "Selection(Track)");
    EXPECT_EQ (selectionClass, getClass ("Selection(Track)"));
    EXPECT_EQ (selectionClass->getBaseClass(), &ObjectSelection::staticClass);
    EXPECT_EQ (selectionClass->getFriendlyName(), "Selection of Tracks");
    EXPECT_EQ (selection.getTargetClass(), &Track::staticClass);
    EXPECT_EQ (selectionClass->getIntegerAttribute ("heightWhenUsedInParameterRow"), 70);
}

TEST_F (SelectionTest, APlainObjectSelectionTargetsAnyObject)
{
    ObjectSelection selection;
    EXPECT_EQ (selection.getClassName(), "ObjectSelection");
    EXPECT_EQ (selection.getTargetClass(), &Object::staticClass);
    EXPECT_EQ (ObjectSelection::staticClass.getBaseClass(), &Container::staticClass);
}

TEST_F (SelectionTest, TheGeneratedClassMakesSelectionsOfItsTarget)
{
    Owned<Object> made (getClass ("Selection(TextTrack)")->createObject());
    auto* selection = dynamic_cast<ObjectSelection*> (made.get());
    ASSERT_NE (selection, nullptr);
    EXPECT_EQ (selection->getTargetClass(), &TextTrack::staticClass);
    EXPECT_EQ (selection->getClass()->getFriendlyName(), "Selection of Texts");
}

TEST_F (SelectionTest, TypedAccessorsGiveMembersOfTheTargetClass)
{
    Selection<Track>& chosen = setlist->chosen;
    chosen.insert (track (2));
    chosen.insert (track (0));
    Track* first = chosen.front();
    Track* last = chosen.back();
    Track* second = chosen.get (1);
    EXPECT_EQ (first->name.get(), "c");
    EXPECT_EQ (last->name.get(), "a");
    EXPECT_EQ (second, last);
    chosen.setSingleton (track (1));
    Track* singleton = chosen.getSingleton();
    EXPECT_EQ (singleton->name.get(), "b");
}

TEST_F (SelectionTest, TheSelectionOfOwnedPointersIsMadeByTheGenerator)
{
    Selection<ObjectOwnedPointer> pointers;
    EXPECT_EQ (pointers.getClassName(), "Selection(ObjectOwnedPointer)");
    EXPECT_EQ (pointers.getClass(), selectionClass (&ObjectOwnedPointer::staticClass));
    Node node;
    pointers.insert (&node.child);
    EXPECT_EQ (pointers.getSingleton(), &node.child);
}
