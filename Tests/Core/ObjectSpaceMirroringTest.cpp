#include "Support/DestructionCounting.h"
#include "Support/TestValues.h"
#include <Tov/Core/ObjectSpace.h>
#include "Message/MessageTestSupport.h"
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** A shape embedded in another object: members of members. */
class Frame : public Object
{
public:
    TOV_DECLARE_CLASS (Frame, Object)

    Shape shape;
    TestInteger depth;
};

TOV_BEGIN_CLASS (Frame)
    TOV_VARIABLE (shape)
    TOV_VARIABLE (depth)
TOV_END_CLASS()

using CountedMessage = DestructionCounting<RecordingMessage>;

ObjectSpace::MirroringExclusionList::TypedIterator firstEntry (const ObjectSpace& space)
{
    return space.getMirroringExclusionList().begin();
}

void updateTimes (ObjectSpace& space, int times)
{
    for (int i = 0; i < times; ++i)
        space.updateMirroring (i * 0.05, 0.05);
}
} // namespace

TEST (ObjectSpaceMirroringTest, AnExcludedObjectIsInTheList)
{
    ObjectSpace space;
    Shape shape, other;
    space.addToMirroringExclusionList (shape, -1);
    EXPECT_TRUE (space.isInMirroringExclusionList (shape));
    EXPECT_FALSE (space.isInMirroringExclusionList (other));
    EXPECT_EQ (space.getMirroringExclusionList().size(), 1u);
}

TEST (ObjectSpaceMirroringTest, MemberVariablesOfAnExcludedObjectAreExcludedAtAnyDepth)
{
    ObjectSpace space;
    auto frame = createOwned<Frame>();
    space.addToMirroringExclusionList (*frame, 2);
    EXPECT_TRUE (space.isInMirroringExclusionList (frame->depth));
    EXPECT_TRUE (space.isInMirroringExclusionList (frame->shape));
    EXPECT_TRUE (space.isInMirroringExclusionList (frame->shape.width));
}

TEST (ObjectSpaceMirroringTest, TheOwnerOfAnExcludedMemberIsNotExcluded)
{
    ObjectSpace space;
    auto frame = createOwned<Frame>();
    space.addToMirroringExclusionList (frame->shape, 2);
    EXPECT_TRUE (space.isInMirroringExclusionList (frame->shape.title));
    EXPECT_FALSE (space.isInMirroringExclusionList (*frame));
    EXPECT_FALSE (space.isInMirroringExclusionList (frame->depth));
}

TEST (ObjectSpaceMirroringTest, AnOwnedChildOfAnExcludedObjectIsNotExcluded)
{
    ObjectSpace space;
    auto frame = createOwned<Frame>();
    // As a vector element is: a heap object whose parent is its owner.
    auto element = createOwned<Shape> (frame.get());
    ASSERT_EQ (element->getParent(), frame.get());
    space.addToMirroringExclusionList (*frame, -1);
    EXPECT_FALSE (space.isInMirroringExclusionList (*element));
    EXPECT_FALSE (space.isInMirroringExclusionList (element->width));
}

TEST (ObjectSpaceMirroringTest, MinusOneSurvivesAnyNumberOfUpdates)
{
    ObjectSpace space;
    Shape shape;
    space.addToMirroringExclusionList (shape, -1);
    updateTimes (space, 100);
    EXPECT_TRUE (space.isInMirroringExclusionList (shape));
    EXPECT_EQ (firstEntry (space).getValue()->get(), -1);
}

TEST (ObjectSpaceMirroringTest, TwoLastsTwoUpdates)
{
    ObjectSpace space;
    Shape shape;
    space.addToMirroringExclusionList (shape, 2);
    updateTimes (space, 1);
    EXPECT_TRUE (space.isInMirroringExclusionList (shape));
    EXPECT_EQ (firstEntry (space).getValue()->get(), 1);
    space.updateMirroring (1.0, 0.05);
    EXPECT_FALSE (space.isInMirroringExclusionList (shape));
    EXPECT_EQ (space.getMirroringExclusionList().size(), 0u);
}

TEST (ObjectSpaceMirroringTest, OneEndsAtTheNextUpdate)
{
    ObjectSpace space;
    Shape shape;
    space.addToMirroringExclusionList (shape, 1);
    EXPECT_TRUE (space.isInMirroringExclusionList (shape));
    space.updateMirroring (-1.0, 0.05);
    EXPECT_FALSE (space.isInMirroringExclusionList (shape));
}

TEST (ObjectSpaceMirroringTest, ZeroIsLeftAloneAndStillExcludes)
{
    ObjectSpace space;
    Shape shape;
    space.addToMirroringExclusionList (shape, 0);
    updateTimes (space, 3);
    EXPECT_EQ (space.getMirroringExclusionList().size(), 1u);
    EXPECT_TRUE (space.isInMirroringExclusionList (shape));
}

TEST (ObjectSpaceMirroringTest, AddingAgainSetsTheCounterOfTheSameEntry)
{
    ObjectSpace space;
    Shape shape;
    space.addToMirroringExclusionList (shape, -1);
    space.addToMirroringExclusionList (shape, 1);
    EXPECT_EQ (space.getMirroringExclusionList().size(), 1u);
    EXPECT_EQ (firstEntry (space).getValue()->get(), 1);
    space.updateMirroring (0.0, 0.05);
    EXPECT_EQ (space.getMirroringExclusionList().size(), 0u);
}

TEST (ObjectSpaceMirroringTest, AnObjectExcludedAgainAfterItsEntryEndedGetsANewEntry)
{
    ObjectSpace space;
    Shape shape, other;
    space.addToMirroringExclusionList (shape, 1);
    space.addToMirroringExclusionList (other, -1);
    space.updateMirroring (0.0, 0.05);
    space.addToMirroringExclusionList (shape, 2);
    ASSERT_EQ (space.getMirroringExclusionList().size(), 2u);
    EXPECT_EQ (firstEntry (space).getKey()->getIfAlreadyCached(), &other);
    auto last = ++firstEntry (space);
    EXPECT_EQ (last.getKey()->getIfAlreadyCached(), &shape);
    EXPECT_EQ (last.getValue()->get(), 2);
    space.addToMirroringExclusionList (shape, 3);
    EXPECT_EQ (space.getMirroringExclusionList().size(), 2u);
    EXPECT_EQ (last.getValue()->get(), 3);
}

TEST (ObjectSpaceMirroringTest, ADeadEntryOfOneStaysAndIsIgnored)
{
    ObjectSpace space;
    auto* shape = create<Shape>();
    space.addToMirroringExclusionList (*shape, 1);
    space.addToMirroringExclusionList (*shape, 1);
    shape->deleteThis();
    updateTimes (space, 3);
    ASSERT_EQ (space.getMirroringExclusionList().size(), 1u);
    EXPECT_EQ (firstEntry (space).getKey()->getIfAlreadyCached(), nullptr);
    EXPECT_EQ (firstEntry (space).getValue()->get(), 1);
}

TEST (ObjectSpaceMirroringTest, ADeadEntryExcludesNothingAndAnotherObjectGetsAnEntryOfItsOwn)
{
    ObjectSpace space;
    auto* gone = create<Shape>();
    space.addToMirroringExclusionList (*gone, -1);
    gone->deleteThis();
    Shape shape;
    EXPECT_FALSE (space.isInMirroringExclusionList (shape));
    space.addToMirroringExclusionList (shape, 2);
    EXPECT_EQ (space.getMirroringExclusionList().size(), 2u);
    EXPECT_TRUE (space.isInMirroringExclusionList (shape));
}

TEST (ObjectSpaceMirroringTest, AnEntryDiesWithItsObjectsDeinitialisation)
{
    ObjectSpace space;
    auto shape = createOwned<Shape>();
    shape->callInitializeObject (&space, nullptr, nullptr);
    space.addToMirroringExclusionList (shape->width, 1);
    shape->callDeinitializeObject();
    EXPECT_FALSE (space.isInMirroringExclusionList (shape->width));
    EXPECT_EQ (firstEntry (space).getKey()->getIfAlreadyCached(), nullptr);
}

TEST (ObjectSpaceMirroringTest, AMessageForNoMirrorerIsDeletedAndRefused)
{
    ObjectSpace space;
    int deletions = 0;
    EXPECT_FALSE (space.pushMessageToMirroringTargets (new CountedMessage (deletions)));
    EXPECT_EQ (deletions, 1);
    EXPECT_FALSE (space.pushMessageToMirroringTargets (nullptr));
}

TEST (ObjectSpaceMirroringTest, MirroringSwitchesAnswerForASpaceThatMirrorsToNobody)
{
    ObjectSpace space;
    Shape sender, target;
    space.addMirroringTargetIdentifier (sender, target);
    space.removeMirroringTargetIdentifier (target);
    space.disableMirroring();
    space.updateMirroring (-1.0, 0.05);
    EXPECT_EQ (space.getMirrorer(), nullptr);
    EXPECT_TRUE (space.getObjectSpaceViews().empty());
}

TEST (ObjectSpaceMirroringTest, TransactionSwitchesAnswerForASpaceWithoutTransactions)
{
    ObjectSpace space;
    Shape context;
    EXPECT_FALSE (space.areTransactionsEnabled());
    EXPECT_EQ (space.getTransactionMaker(), nullptr);
    EXPECT_EQ (space.startTransaction ("Move", context), nullptr);
    EXPECT_EQ (space.startVolatileTransaction(), nullptr);
    space.startBypassTransaction();
    EXPECT_FALSE (space.isInsideNonVolatileTransaction());
    EXPECT_FALSE (space.isInsideVolatileTransaction());
    space.finishBypassTransaction();
    space.finishTransaction (nullptr);
    space.storeValueForTransaction (context, true, true);
    space.disableTransactions();
    EXPECT_TRUE (space.getObjectSpaceViews().empty());
}
