#include "MirroringTestSupport.h"
#include "Support/TestValues.h"
#include "Standard/Profiler/ProfilerTestSupport.h"
#include "Message/RemoteCallTestSupport.h"
#include "Support/DeletionWatcher.h"
#include "Support/RecordingExecutionContext.h"
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Message/Mirroring/MirroringRequestAsyncCompletionRoutine.h>
#include <Tov/Message/Mirroring/MirroringRequestRemoteCall.h>
#include <Tov/Message/Transaction/ScopedTransaction.h>
#include <Tov/Standard/Program.h>

using namespace tov;
using namespace tov::test;

// A source and its mirror in one process: the request, the snapshot, and diffs applied.
namespace
{
class MirroringTest : public MirroringTestBase
{
protected:
    void expectSame()
    {
        EXPECT_EQ (describe (mirrorSpace()), describe (sourceSpace()));
        ASSERT_NE (mirrored(), nullptr);
        EXPECT_EQ (mirrored()->computeHash(), document->computeHash());
    }

    /** The mirror's object of that identifier, as an item. */
    Item* mirroredItem (UniqueIdentifier identifier)
    {
        return dynamic_cast<Item*> (mirrorSpace().getObject (identifier));
    }
};

/** Applies diffs made by hand to a mirror that holds a copy of the document. */
class DiffObjectSpaceProcessTest : public MirroringTest
{
protected:
    void SetUp() override
    {
        MirroringTest::SetUp();
        appendFolder ("folder", UniqueIdentifier (0x1000));
        requestMirror();
        sourceSpace().disableMirroring();
    }

    static VariableAddress addressAt (uint64_t identifier, const juce::String& path)
    {
        VariableAddress address;
        address.setSpace ("Document");
        address.setRootUniqueIdentifier (UniqueIdentifier (identifier));
        address.getPath().addChildPath (path);
        return address;
    }

    /** Runs the diff as the mirror peer would on arrival, from the source. */
    void deliver (DiffObjectSpaceMessage* diff)
    {
        ASSERT_TRUE (Program::get().postEnvelopToMessageTarget (mirrorIdentifier(), new Envelop (sourceIdentifier().clone(), diff), nullptr));
        mirror->processIncomingMessages (service.context);
    }

    static std::shared_ptr<State> shallowState (const Object& object)
    {
        return StateObjectExporter::make (object, exportOwnedPointersAsIdentifiers | exportTransientVariables, true);
    }

    /** An item with that identifier, alone, and the state a mirrorer would send of it. */
    static std::shared_ptr<State> createdItemState (uint64_t identifier, int64_t value)
    {
        Owned<Item> item (TransactionTest::makeItem ("made", value));
        item->setUniqueIdentifier (UniqueIdentifier (identifier));
        return shallowState (*item);
    }

    /** The state of a list of items holding exactly that identifier. */
    static std::shared_ptr<State> listOf (uint64_t identifier)
    {
        auto list = std::make_shared<State>();
        list->addVariable (std::make_shared<State> (UniqueIdentifier (identifier)));
        return list;
    }
};
} // namespace

TEST_F (MirroringTest, ARequestGivesTheMirrorTheWholeDocumentUnderTheRootIdentifier)
{
    appendItem (document->items, "one", 1);
    appendItem (document->archive, "two", 2);
    document->count.set (4);
    EXPECT_EQ (mirrorSpace().getRootObject(), nullptr);

    requestMirror();
    expectSame();
    EXPECT_EQ (mirrored()->getUniqueIdentifier(), UniqueIdentifier::getRootIdentifier());
    EXPECT_EQ (mirrorSpace().getNumObjects(), sourceSpace().getNumObjects());
    ASSERT_NE (mirrorer(), nullptr);
    EXPECT_TRUE (mirrorer()->getTarget (0)->equals (mirrorIdentifier()));
    EXPECT_EQ (mirror->getNumCompletionRoutines(), 0u);
}

TEST_F (MirroringTest, NumbersAndStringsReachTheMirror)
{
    requestMirror();
    document->count.set (12);
    document->level.set (0.25);
    document->title.set ("second");
    sync();
    expectSame();
    EXPECT_EQ (mirrored()->count.get(), 12);
    EXPECT_EQ (mirrored()->title.get(), "second");
}

TEST_F (MirroringTest, CreatedObjectsAndTheirLaterChangesReachTheMirror)
{
    requestMirror();
    auto& item = appendItem (document->items, "one", 1);
    item.value.set (5);
    document->featured.set (TransactionTest::makeItem ("star", 9));
    sync();
    expectSame();
    ASSERT_NE (mirroredItem (item.getUniqueIdentifier()), nullptr);
    EXPECT_EQ (mirroredItem (item.getUniqueIdentifier())->value.get(), 5);

    item.value.set (6);
    document->featured->amount.set (1.5);
    sync();
    expectSame();
}

TEST_F (MirroringTest, AnObjectMovedToAnotherContainerStaysTheSameObjectOnTheMirror)
{
    auto& item = appendItem (document->items, "moving", 1);
    requestMirror();
    auto* mirroredBefore = mirroredItem (item.getUniqueIdentifier());
    ASSERT_NE (mirroredBefore, nullptr);
    DeletionWatcher watcher (*mirroredBefore);

    // "archive" comes before "items" in address order: the new place is loaded first.
    item.incrementReferenceCounter();
    document->items.remove (&item);
    document->archive.append (&item);
    item.decrementReferenceCounter();
    sync();
    expectSame();
    EXPECT_FALSE (watcher.deleted);
    EXPECT_EQ (mirrored()->archive.size(), 1u);
    EXPECT_EQ (mirrored()->archive.get (0), mirroredBefore);

    // And back, the old place first.
    item.incrementReferenceCounter();
    document->archive.remove (&item);
    document->items.append (&item);
    item.decrementReferenceCounter();
    sync();
    expectSame();
    EXPECT_FALSE (watcher.deleted);
    EXPECT_EQ (mirrored()->items.get (0), mirroredBefore);
}

TEST_F (MirroringTest, ADeletionShowsInTheListThatHeldTheObject)
{
    auto& item = appendItem (document->items, "going", 1);
    appendItem (document->items, "staying", 2);
    requestMirror();
    DeletionWatcher watcher (*mirroredItem (item.getUniqueIdentifier()));
    document->items.remove ((size_t) 0);
    sync();
    expectSame();
    EXPECT_TRUE (watcher.deleted);
    EXPECT_EQ (mirrored()->items.size(), 1u);
}

TEST_F (MirroringTest, AWeakPointerFindsTheMirrorsOwnObject)
{
    auto& item = appendItem (document->items, "target", 1);
    requestMirror();
    document->link.set (&item);
    sync();
    expectSame();
    EXPECT_EQ (mirrored()->link.get(), mirroredItem (item.getUniqueIdentifier()));
}

TEST_F (MirroringTest, ARequestForASpaceTheSourceLacksIsRefusedAndTheMirrorStaysEmpty)
{
    RecordingCompletionRoutine routine;
    MirroringRequestRemoteCall call ("Nowhere");
    ASSERT_TRUE (call.callPerformAsync (*mirror, *source->getIncomingMessageTarget(), routine, nullptr));
    source->processIncomingMessages (service.context);
    mirror->processIncomingMessages (service.context);
    ASSERT_EQ (routine.getLines().size(), 1u);
    EXPECT_EQ (routine.getLines()[0], "0 null");
    EXPECT_NE (std::find (lines.begin(), lines.end(), "error Could not find space Nowhere"), lines.end()) << juce::StringArray (lines.data(), (int) lines.size()).joinIntoString ("\n");
    EXPECT_EQ (mirrorer(), nullptr);
}

TEST_F (MirroringTest, ARequestThatIsCancelledLeavesTheMirrorEmptyAndItsLateAnswerIsDropped)
{
    ASSERT_TRUE (mirror->asyncRequestMirroringFrom (*source->getIncomingMessageTarget()));
    mirror->cancelAllCompletionRoutines();
    EXPECT_EQ (mirrorSpace().getRootObject(), nullptr);
    source->processIncomingMessages (service.context);
    mirror->processIncomingMessages (service.context);
    EXPECT_EQ (mirrorSpace().getRootObject(), nullptr);
}

TEST_F (MirroringTest, ADiffForASpaceTheMirrorLacksIsDroppedWithoutAWord)
{
    requestMirror();
    const auto before = lines.size();
    auto* diff = new DiffObjectSpaceMessage ("Nowhere");
    diff->addChange (VariableAddress (&document->count), std::make_shared<State> (3));
    ASSERT_TRUE (Program::get().postEnvelopToMessageTarget (mirrorIdentifier(), new Envelop (sourceIdentifier().clone(), diff), nullptr));
    mirror->processIncomingMessages (service.context);
    EXPECT_EQ (lines.size(), before);
    EXPECT_EQ (mirrored()->count.get(), 0);
}

TEST_F (MirroringTest, DiffsOfOneSpaceQueuedTogetherAreAppliedAsOne)
{
    requestMirror();
    auto& item = appendItem (document->items, "one", 1);
    const auto identifier = item.getUniqueIdentifier();
    source->updateObjectSpacesMirroring (-1.0, 0.05);
    item.value.set (2);
    source->updateObjectSpacesMirroring (-1.0, 0.05);
    document->items.remove ((size_t) 0);
    source->updateObjectSpacesMirroring (-1.0, 0.05);
    EXPECT_EQ (mirror->getIncomingMessageTarget()->getNumEnvelops(), 3u);
    mirror->processIncomingMessages (service.context);
    expectSame();
    EXPECT_EQ (mirrorSpace().getObject (identifier), nullptr);
}

TEST_F (MirroringTest, ATargetThatReconnectsMustAskAgainAndConverges)
{
    requestMirror();
    document->count.set (1);
    sync();
    sourceSpace().removeMirroringTargetIdentifier (mirrorIdentifier());
    mirrorSpace().deleteRootObject();

    document->count.set (2);
    appendItem (document->items, "while away", 3);
    source->updateObjectSpacesMirroring (-1.0, 0.05);
    EXPECT_EQ (mirror->getIncomingMessageTarget()->getNumEnvelops(), 0u);
    requestMirror();
    expectSame();
    document->count.set (3);
    sync();
    expectSame();
}

TEST_F (MirroringTest, AMirrorOfAMirrorFollowsTheSource)
{
    requestMirror();
    EditorPeer third (new Integer (3));
    service.peers.push_back (&third);
    ASSERT_TRUE (third.asyncRequestMirroringFrom (*mirror->getIncomingMessageTarget()));
    mirror->processIncomingMessages (service.context);
    third.processIncomingMessages (service.context);

    appendItem (document->items, "relayed", 5);
    document->title.set ("relayed");
    sync();
    mirror->updateObjectSpacesMirroring (-1.0, 0.05);
    third.processIncomingMessages (service.context);
    EXPECT_EQ (describe (third.document), describe (sourceSpace()));
    service.peers.pop_back();
}

//==============================================================================
TEST_F (DiffObjectSpaceProcessTest, AChangeAddressingAChildMadeByAnEarlierChangeIsAppliedInTheSamePass)
{
    // The folder (0x1000) comes before its new child (0x2000) in address order.
    auto* diff = new DiffObjectSpaceMessage ("Document");
    diff->addChange (addressAt (0x1000, "children"), listOf (0x2000));
    // Added before the creation, so that it stays a change of its own.
    diff->addChange (addressAt (0x2000, "value"), std::make_shared<State> (9));
    diff->setCreation (UniqueIdentifier (0x2000), createdItemState (0x2000, 1));
    deliver (diff);
    ASSERT_NE (mirroredItem (UniqueIdentifier (0x2000)), nullptr);
    EXPECT_EQ (mirroredItem (UniqueIdentifier (0x2000))->value.get(), 9);
}

TEST_F (DiffObjectSpaceProcessTest, AChangeAddressingAChildMadeByALaterChangeIsAppliedInTheNextPass)
{
    // The new child (0x10) comes before the folder (0x1000) that makes it.
    auto* diff = new DiffObjectSpaceMessage ("Document");
    diff->addChange (addressAt (0x10, "value"), std::make_shared<State> (9));
    diff->addChange (addressAt (0x1000, "children"), listOf (0x10));
    diff->setCreation (UniqueIdentifier (0x10), createdItemState (0x10, 1));
    deliver (diff);
    ASSERT_NE (mirroredItem (UniqueIdentifier (0x10)), nullptr);
    EXPECT_EQ (mirroredItem (UniqueIdentifier (0x10))->value.get(), 9);
}

TEST_F (DiffObjectSpaceProcessTest, ChangesThatNeverResolveAreDroppedWithoutAWord)
{
    const auto before = lines.size();
    auto* diff = new DiffObjectSpaceMessage ("Document");
    diff->addChange (addressAt (0x777, "value"), std::make_shared<State> (9));
    diff->addChange (addressAt (1, "count"), std::make_shared<State> (4));
    deliver (diff);
    EXPECT_EQ (mirrored()->count.get(), 4);
    EXPECT_EQ (lines.size(), before);
}

TEST_F (DiffObjectSpaceProcessTest, AnExcludedObjectIgnoresTheDiffAndItsEntryIsNotTriedAgain)
{
    mirrorSpace().addToMirroringExclusionList (mirrored()->count, -1);
    int loads = 0;
    struct LoadCounter : View
    {
        explicit LoadCounter (int& count) : count (count) {}
        void changedCallback (Object*, Object*) override { ++count; }
        int& count;
    } counter (loads);
    counter.attachObject (&mirrored()->title);

    auto* diff = new DiffObjectSpaceMessage ("Document");
    diff->addChange (addressAt (1, "count"), std::make_shared<State> (4));
    diff->addChange (addressAt (1, "title"), std::make_shared<State> ("applied"));
    diff->addChange (addressAt (0x777, "value"), std::make_shared<State> (9));
    deliver (diff);
    EXPECT_EQ (mirrored()->count.get(), 0);
    EXPECT_EQ (mirrored()->title.get(), "applied");
    EXPECT_EQ (loads, 1);
    counter.detachObject (&mirrored()->title);
}

TEST_F (DiffObjectSpaceProcessTest, ACreationOfAnObjectTheMirrorHasIsAChangeOfIt)
{
    auto* diff = new DiffObjectSpaceMessage ("Document");
    auto state = shallowState (*document->items.get (0));
    state->getVariableStateByNameRef ("name")->setString ("renamed");
    diff->setCreation (UniqueIdentifier (0x1000), state);
    auto* before = mirroredItem (UniqueIdentifier (0x1000));
    deliver (diff);
    EXPECT_EQ (mirroredItem (UniqueIdentifier (0x1000)), before);
    EXPECT_EQ (before->name.get(), "renamed");
}

TEST_F (DiffObjectSpaceProcessTest, ACreationOfTheRootReplacesTheMirrorsRoot)
{
    auto* diff = new DiffObjectSpaceMessage ("Document");
    Owned<Document> other (static_cast<Document*> (Document::staticClass.createObject()));
    other->title.set ("another world", false);
    other->setUniqueIdentifier (UniqueIdentifier::getRootIdentifier());
    diff->setCreation (UniqueIdentifier::getRootIdentifier(), shallowState (*other));
    DeletionWatcher watcher (*mirrored());
    deliver (diff);
    EXPECT_TRUE (watcher.deleted);
    ASSERT_NE (mirrored(), nullptr);
    EXPECT_EQ (mirrored()->title.get(), "another world");
    EXPECT_EQ (mirrored()->getUniqueIdentifier(), UniqueIdentifier::getRootIdentifier());
    EXPECT_EQ (mirrored()->items.size(), 0u);
}

TEST_F (DiffObjectSpaceProcessTest, ARootOfAnUnknownClassIsReportedAndTheMirrorKeepsItsRoot)
{
    auto* diff = new DiffObjectSpaceMessage ("Document");
    tov::testing::RecordingExecutionContext context;
    auto state = State::createFromStateString (context, "'NoSuchClass @1 {}", {});
    ASSERT_NE (state, nullptr);
    diff->setCreation (UniqueIdentifier::getRootIdentifier(), state);
    auto* before = mirrored();
    deliver (diff);
    EXPECT_EQ (mirrored(), before);
    EXPECT_NE (std::find_if (lines.begin(), lines.end(), [] (const juce::String& line) { return line.contains ("NoSuchClass"); }), lines.end())
        << juce::StringArray (lines.data(), (int) lines.size()).joinIntoString ("\n");
}

TEST_F (DiffObjectSpaceProcessTest, AChangeThatWouldMakeAnObjectHoldOneOfItsOwnersIsRefused)
{
    auto* folder = dynamic_cast<Folder*> (mirrorSpace().getObject (UniqueIdentifier (0x1000)));
    ASSERT_NE (folder, nullptr);
    auto* diff = new DiffObjectSpaceMessage ("Document");
    diff->addChange (addressAt (0x1000, "children"), listOf (0x1000));
    diff->addChange (addressAt (1, "featured"), std::make_shared<State> (UniqueIdentifier::getRootIdentifier()));
    deliver (diff);
    EXPECT_EQ (folder->children.size(), 0u);
    EXPECT_EQ (mirrored()->featured.get(), nullptr);
    EXPECT_EQ (std::count_if (lines.begin(), lines.end(), [] (const juce::String& line)
                              { return line.startsWith ("error Object with uid ") && line.contains (", which it holds"); }), 2)
        << juce::StringArray (lines.data(), (int) lines.size()).joinIntoString ("\n");
}

TEST_F (MirroringTest, AMirrorReceivesTheResultOfAnUndoAndARedoAsChanges)
{
    RecordingTarget receiver;
    History history;
    history.setParent (source);
    history.setMessageTargets (receiver, *source->getIncomingMessageTarget());
    service.history = &history;
    sourceSpace().enableTransactions (receiver, *source->getIncomingMessageTarget());
    history.clear ("Start");
    requestMirror();

    {
        ScopedTransaction transaction ("Edit", *document);
        document->count.set (7);
        document->items.append (TransactionTest::makeItem ("added", 2));
    }
    sync();
    expectSame();
    EXPECT_EQ (mirrored()->items.size(), 1u);

    history.undo();
    sync();
    expectSame();
    EXPECT_EQ (mirrored()->count.get(), 0);
    EXPECT_EQ (mirrored()->items.size(), 0u);

    history.redo();
    sync();
    expectSame();
    EXPECT_EQ (mirrored()->count.get(), 7);
    service.history = nullptr;
    sourceSpace().disableTransactions();
}

TEST_F (MirroringTest, ASnapshotOfASpaceWithoutRootTakesTheMirrorsRootAway)
{
    requestMirror();
    ASSERT_NE (mirrored(), nullptr);
    sourceSpace().removeMirroringTargetIdentifier (mirrorIdentifier());
    sourceSpace().deleteRootObject();
    requestMirror();
    EXPECT_EQ (mirrorSpace().getRootObject(), nullptr);
}

TEST_F (MirroringTest, ARequestReceivedByATargetWithoutIdentifierIsRefused)
{
    EditorPeer anonymous;
    RecordingCompletionRoutine routine;
    MirroringRequestRemoteCall call ("Document");
    ASSERT_TRUE (call.callPerformAsync (*mirror, *anonymous.getIncomingMessageTarget(), routine, nullptr));
    anonymous.processIncomingMessages (service.context);
    EXPECT_NE (std::find (lines.begin(), lines.end(), "error Mirroring request cannot load MessageTarget identifier"), lines.end())
        << juce::StringArray (lines.data(), (int) lines.size()).joinIntoString ("\n");
    EXPECT_EQ (anonymous.document.getMirrorer(), nullptr);
    mirror->cancelAllCompletionRoutines();
    EXPECT_EQ (routine.getLines(), std::vector<juce::String> { "0 null" });
}

TEST_F (MirroringTest, TheMirrorerAndTheMirrorOpenTheirProfilerScopes)
{
    requestMirror();
    InstalledProfiler<RecordingStackProfiler> profiler;
    sourceSpace().deleteRootObject();
    sourceSpace().setRootObject (static_cast<Document*> (Document::staticClass.createObject()), true);
    document = static_cast<Document*> (sourceSpace().getRootObject());
    sync();
    expectSame();
    const auto calls = profiler->getCalls();
    const std::vector<std::string> expected { "make UpdateOutputMirrorer Document 0", "make MakeMessage 0", "make PostEnvelop 0",
                                              "finished PostEnvelop at 3", "finished MakeMessage at 2", "finished UpdateOutputMirrorer Document at 1",
                                              "make ProcessIncomingMessages 0", "make MirrorObjectSpaceRoot 0", "finished MirrorObjectSpaceRoot at 2",
                                              "finished ProcessIncomingMessages at 1" };
    EXPECT_EQ (calls, expected);
}
