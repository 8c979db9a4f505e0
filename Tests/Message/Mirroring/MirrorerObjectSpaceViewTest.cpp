#include "MirroringTestSupport.h"
#include "Support/TestValues.h"
#include <Tov/Message/Envelop.h>

using namespace tov;
using namespace tov::test;

// What the source's mirrorer sends, and when: the mirror peer's queue is read unprocessed.
namespace
{
class MirrorerObjectSpaceViewTest : public MirroringTestBase
{
protected:
    void SetUp() override
    {
        MirroringTestBase::SetUp();
        addMirrorAsTarget();
    }

    /** The one diff the mirror was sent since the last call; fails when there is not exactly one. */
    std::unique_ptr<TakenEnvelops> takeOneDiff()
    {
        auto taken = takeMirrorEnvelops();
        EXPECT_EQ (taken->size(), 1u);
        if (taken->size() == 1)
            EXPECT_NE (taken->getDiff (0), nullptr);
        return taken;
    }

    VariableAddress addressOf (Object& object) { return VariableAddress (&object); }
};

/** A peer of the service with an identifier of its own, which only collects what it is sent. */
struct ExtraTarget
{
    explicit ExtraTarget (int64_t identifier) : peer (new Integer (identifier)) {}
    EditorPeer peer;
};
} // namespace

TEST_F (MirrorerObjectSpaceViewTest, TheFirstTargetMakesTheMirrorerWhichStartsDue)
{
    ASSERT_NE (mirrorer(), nullptr);
    EXPECT_EQ (mirrorer()->getLastUpdateTime(), -1.0);
    EXPECT_EQ (mirrorer()->getNumTargets(), 1u);
    EXPECT_TRUE (mirrorer()->getTarget (0)->equals (mirrorIdentifier()));
    EXPECT_TRUE (mirrorer()->getSenderIdentifier()->equals (sourceIdentifier()));
    EXPECT_EQ (sourceSpace().getObjectSpaceViews().back(), mirrorer());
}

TEST_F (MirrorerObjectSpaceViewTest, NoChangeSinceTheLastUpdateSendsNothingAndTheUpdateCountsAsDone)
{
    sourceSpace().updateMirroring (10.0, 0.05);
    EXPECT_EQ (mirrorer()->getLastUpdateTime(), 10.0);
    EXPECT_EQ (takeMirrorEnvelops()->size(), 0u);
    sourceSpace().updateMirroring (10.05, 0.05);
    EXPECT_EQ (mirrorer()->getLastUpdateTime(), 10.05);
    EXPECT_EQ (takeMirrorEnvelops()->size(), 0u);
}

TEST_F (MirrorerObjectSpaceViewTest, AChangedNumberGoesOutAtItsAddressInTheNameOfTheSource)
{
    document->count.set (5);
    EXPECT_EQ (mirrorer()->getChangedObjects().size(), 1u);
    sourceSpace().updateMirroring (10.0, 0.05);
    EXPECT_TRUE (mirrorer()->getChangedObjects().empty());
    EXPECT_EQ (mirrorer()->getDiffMessage(), nullptr);

    auto taken = takeOneDiff();
    auto* diff = taken->getDiff (0);
    EXPECT_TRUE (taken->envelops[0]->getSenderIdentifier()->equals (sourceIdentifier()));
    EXPECT_EQ (diff->getTargetSpace(), "Document");
    EXPECT_EQ (diff->toString(), "DiffObjectSpaceMessage: 1 changes");
    ASSERT_EQ (diff->getChanges().size(), 1u);
    EXPECT_EQ (diff->getChanges().begin()->first.toString(), "Document @1.count");
    EXPECT_EQ (diff->getChanges().begin()->second->toString(), "5");
}

TEST_F (MirrorerObjectSpaceViewTest, ManyChangesOfOneObjectInAPeriodGoOutOnceWithTheLastValue)
{
    for (int i = 1; i <= 10; ++i)
        document->count.set (i);
    document->title.set ("second");
    sourceSpace().updateMirroring (10.0, 0.05);
    auto taken = takeOneDiff();
    const auto& changes = taken->getDiff (0)->getChanges();
    ASSERT_EQ (changes.size(), 2u);
    EXPECT_EQ (changes.at (addressOf (document->count))->toString(), "10");
    EXPECT_EQ (changes.at (addressOf (document->title))->toString(), "\"second\"");
}

TEST_F (MirrorerObjectSpaceViewTest, AChangedObjectCreatedInTheSamePeriodGoesOutOnceInsideTheCreations)
{
    auto& item = appendItem (document->items, "one", 1);
    item.value.set (7);
    item.name.set ("uno");
    sourceSpace().updateMirroring (10.0, 0.05);

    auto taken = takeOneDiff();
    auto* diff = taken->getDiff (0);
    EXPECT_EQ (diff->toString(), "DiffObjectSpaceMessage: 1 creations, 1 changes");
    ASSERT_EQ (diff->getCreations().count (item.getUniqueIdentifier()), 1u);
    const auto& created = diff->getCreations().at (item.getUniqueIdentifier());
    EXPECT_EQ (created->getVariableStateByName ("value")->toString(), "7");
    EXPECT_EQ (created->getVariableStateByName ("name")->toString(), "\"uno\"");
    // The only change is the list that holds it, as identifiers.
    ASSERT_EQ (diff->getChanges().count (addressOf (document->items)), 1u);
    EXPECT_EQ (diff->getChanges().at (addressOf (document->items))->getVariableState (0)->getUniqueIdentifierValue(), item.getUniqueIdentifier());
}

TEST_F (MirrorerObjectSpaceViewTest, AChangeOfACreatedObjectItselfReplacesItsCreation)
{
    auto& item = appendItem (document->items, "one", 1);
    item.value.set (3, false);
    item.changed();
    sourceSpace().updateMirroring (10.0, 0.05);
    auto taken = takeOneDiff();
    auto* diff = taken->getDiff (0);
    EXPECT_EQ (diff->getCreations().at (item.getUniqueIdentifier())->getVariableStateByName ("value")->toString(), "3");
    EXPECT_EQ (diff->getChanges().size(), 1u);
}

TEST_F (MirrorerObjectSpaceViewTest, AChangeOfACreatedObjectThatItsStateCannotTakeStaysAChange)
{
    auto& item = appendItem (document->items, "one", 1);
    // A creation whose state has no variables: none of the item's changes fits into it.
    const_cast<DiffObjectSpaceMessage*> (mirrorer()->getDiffMessage())->setCreation (item.getUniqueIdentifier(), std::make_shared<State> (0));
    item.value.set (8);
    sourceSpace().updateMirroring (10.0, 0.05);
    auto taken = takeOneDiff();
    const auto& changes = taken->getDiff (0)->getChanges();
    ASSERT_EQ (changes.count (addressOf (item.value)), 1u);
    EXPECT_EQ (changes.at (addressOf (item.value))->toString(), "8");
}

TEST_F (MirrorerObjectSpaceViewTest, AnObjectCreatedAndDestroyedInTheSamePeriodSendsNothing)
{
    auto& item = appendItem (document->items, "one", 1);
    const auto identifier = item.getUniqueIdentifier();
    item.value.set (2);
    document->items.remove ((size_t) 0);
    sourceSpace().updateMirroring (10.0, 0.05);

    auto taken = takeOneDiff();
    auto* diff = taken->getDiff (0);
    EXPECT_TRUE (diff->getCreations().empty());
    EXPECT_EQ (diff->getCreations().count (identifier), 0u);
    // What is left is the list, empty as it was.
    ASSERT_EQ (diff->getChanges().size(), 1u);
    EXPECT_EQ (diff->getChanges().begin()->first, addressOf (document->items));
    EXPECT_EQ (diff->getChanges().begin()->second->getNumVariables(), 0u);
}

TEST_F (MirrorerObjectSpaceViewTest, AChangedMemberOfADeletedObjectIsForgotten)
{
    auto& item = appendItem (document->items, "one", 1);
    sourceSpace().updateMirroring (-1.0, 0.05);
    takeMirrorEnvelops();
    item.value.set (4);
    EXPECT_EQ (mirrorer()->getChangedObjects().count (&item.value), 1u);
    document->items.remove ((size_t) 0);
    EXPECT_EQ (mirrorer()->getChangedObjects().count (&item.value), 0u);
    sourceSpace().updateMirroring (-1.0, 0.05);
    auto taken = takeOneDiff();
    EXPECT_EQ (taken->getDiff (0)->getChanges().size(), 1u);
}

TEST_F (MirrorerObjectSpaceViewTest, ThePeriodHoldsRegularUpdatesBack)
{
    sourceSpace().updateMirroring (10.0, 0.05);
    document->count.set (1);
    sourceSpace().updateMirroring (10.04, 0.05);
    EXPECT_EQ (takeMirrorEnvelops()->size(), 0u);
    EXPECT_EQ (mirrorer()->getLastUpdateTime(), 10.0);
    sourceSpace().updateMirroring (10.05, 0.05);
    EXPECT_EQ (takeOneDiff()->size(), 1u);
    EXPECT_EQ (mirrorer()->getLastUpdateTime(), 10.05);
}

TEST_F (MirrorerObjectSpaceViewTest, AForcedUpdateAlwaysRunsAndMakesTheNextRegularOneDueAtOnce)
{
    sourceSpace().updateMirroring (10.0, 0.05);
    document->count.set (1);
    sourceSpace().updateMirroring (-1.0, 0.05);
    EXPECT_EQ (takeOneDiff()->size(), 1u);
    EXPECT_EQ (mirrorer()->getLastUpdateTime(), -1.0);

    document->count.set (2);
    sourceSpace().updateMirroring (10.01, 0.05);
    EXPECT_EQ (takeOneDiff()->size(), 1u);
    EXPECT_EQ (mirrorer()->getLastUpdateTime(), 10.01);
}

TEST_F (MirrorerObjectSpaceViewTest, ATargetThatIsNotFoundLeavesAndTheLastOneTakesTheMirrorerAlong)
{
    sourceSpace().removeMirroringTargetIdentifier (mirrorIdentifier());
    ASSERT_EQ (mirrorer(), nullptr);
    Integer nobody (99);
    sourceSpace().addMirroringTargetIdentifier (sourceIdentifier(), nobody);
    ASSERT_NE (mirrorer(), nullptr);
    document->count.set (1);
    sourceSpace().updateMirroring (10.0, 0.05);
    EXPECT_EQ (mirrorer(), nullptr);
    EXPECT_EQ (sourceSpace().getObjectSpaceViews().size(), 0u);
}

TEST_F (MirrorerObjectSpaceViewTest, ATargetThatIsNotFoundLeavesAndTheOthersStillGetTheDiff)
{
    Integer nobody (99);
    sourceSpace().addMirroringTargetIdentifier (sourceIdentifier(), nobody);
    ExtraTarget third (3);
    sourceSpace().addMirroringTargetIdentifier (sourceIdentifier(), Integer (3));
    document->count.set (1);
    sourceSpace().updateMirroring (10.0, 0.05);

    ASSERT_NE (mirrorer(), nullptr);
    ASSERT_EQ (mirrorer()->getNumTargets(), 2u);
    EXPECT_TRUE (mirrorer()->getTarget (0)->equals (mirrorIdentifier()));
    EXPECT_TRUE (mirrorer()->getTarget (1)->equals (Integer (3)));
    EXPECT_EQ (takeOneDiff()->size(), 1u);
    EXPECT_EQ (third.peer.getIncomingMessageTarget()->getNumEnvelops(), 1u);
}

TEST_F (MirrorerObjectSpaceViewTest, ANewTargetStartsCleanWhatCameBeforeGoesToTheOthers)
{
    document->count.set (1);
    ExtraTarget third (3);
    sourceSpace().addMirroringTargetIdentifier (sourceIdentifier(), Integer (3));
    EXPECT_EQ (takeOneDiff()->size(), 1u);
    EXPECT_EQ (third.peer.getIncomingMessageTarget()->getNumEnvelops(), 0u);

    document->count.set (2);
    sourceSpace().updateMirroring (-1.0, 0.05);
    EXPECT_EQ (takeOneDiff()->size(), 1u);
    EXPECT_EQ (third.peer.getIncomingMessageTarget()->getNumEnvelops(), 1u);
}

TEST_F (MirrorerObjectSpaceViewTest, AnEqualTargetIsNotAddedTwice)
{
    sourceSpace().addMirroringTargetIdentifier (sourceIdentifier(), Integer (2));
    EXPECT_EQ (mirrorer()->getNumTargets(), 1u);
    document->count.set (1);
    sourceSpace().updateMirroring (-1.0, 0.05);
    EXPECT_EQ (takeOneDiff()->size(), 1u);
}

TEST_F (MirrorerObjectSpaceViewTest, RemovingTheLastTargetDisablesMirroring)
{
    sourceSpace().removeMirroringTargetIdentifier (Integer (7));
    EXPECT_NE (mirrorer(), nullptr);
    sourceSpace().removeMirroringTargetIdentifier (Integer (2));
    EXPECT_EQ (mirrorer(), nullptr);
    EXPECT_TRUE (sourceSpace().getObjectSpaceViews().empty());
    document->count.set (1);
    sourceSpace().updateMirroring (-1.0, 0.05);
    EXPECT_EQ (takeMirrorEnvelops()->size(), 0u);
}

TEST_F (MirrorerObjectSpaceViewTest, InternalVariablesAndWhatIsCreatedUnderThemAreNotMirrored)
{
    auto& folder = appendFolder ("folder", UniqueIdentifier (0x1000));
    sourceSpace().updateMirroring (-1.0, 0.05);
    takeMirrorEnvelops();

    document->hidden.set (3);
    auto& scratch = appendItem (folder.scratch, "scratch", 1);
    EXPECT_TRUE (mirrorer()->getChangedObjects().empty());
    EXPECT_NE (scratch.getUniqueIdentifier(), UniqueIdentifier());
    EXPECT_EQ (mirrorer()->getDiffMessage(), nullptr);
    sourceSpace().updateMirroring (-1.0, 0.05);
    EXPECT_EQ (takeMirrorEnvelops()->size(), 0u);

    auto& child = appendItem (folder.children, "child", 1);
    sourceSpace().updateMirroring (-1.0, 0.05);
    auto taken = takeOneDiff();
    EXPECT_EQ (taken->getDiff (0)->getCreations().count (child.getUniqueIdentifier()), 1u);
}

TEST_F (MirrorerObjectSpaceViewTest, AMessagePushedToTheTargetsGoesToEachInTheNameOfTheSource)
{
    ExtraTarget third (3);
    sourceSpace().addMirroringTargetIdentifier (sourceIdentifier(), Integer (3));
    EXPECT_TRUE (sourceSpace().pushMessageToMirroringTargets (new DiffObjectSpaceMessage ("Document")));
    auto taken = takeOneDiff();
    EXPECT_TRUE (taken->envelops[0]->getSenderIdentifier()->equals (sourceIdentifier()));
    EXPECT_EQ (third.peer.getIncomingMessageTarget()->getNumEnvelops(), 1u);
}

TEST_F (MirrorerObjectSpaceViewTest, DisablingMirroringDeletesTheMirrorerAndItsDiff)
{
    document->count.set (1);
    sourceSpace().disableMirroring();
    EXPECT_EQ (mirrorer(), nullptr);
    EXPECT_TRUE (sourceSpace().getObjectSpaceViews().empty());
    sourceSpace().updateMirroring (-1.0, 0.05);
    EXPECT_EQ (takeMirrorEnvelops()->size(), 0u);
}
