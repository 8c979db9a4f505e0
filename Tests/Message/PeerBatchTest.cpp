#include "MessageTestSupport.h"
#include "Support/DeletionWatcher.h"
#include <Tov/Message/Mirroring/MirroringMessage.h>
#include <Tov/Standard/Program.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** A peer "1" of a service on the test's thread, fed one batch of envelops at a time. The
    document's root sits in the exclusion list with a life of 10, which each mirroring update
    of the document counts down by one. */
class PeerBatchTest : public MessageTest
{
protected:
    PeerService service;
    bool serviceRuns = service.startService (true);
    TestPeer& peer = service.addPeer (makeIdentifier (1));
    Shape* root = makeRoot();

    Shape* makeRoot()
    {
        auto* shape = create<Shape>();
        peer.getSpaces();
        peer.document.setRootObject (shape, true);
        peer.document.addToMirroringExclusionList (*shape, 10);
        return shape;
    }

    int64_t getNumMirroringUpdates() const
    {
        return 10 - peer.document.getMirroringExclusionList().begin().getValue()->get();
    }

    void post (int64_t sender, std::initializer_list<Message*> messages)
    {
        auto* envelop = new Envelop (makeIdentifier (sender), nullptr);
        for (auto* message : messages)
            envelop->addMessage (message);
        ASSERT_TRUE (peer.getIncomingMessageTarget()->postEnvelop (envelop));
    }

    void processBatch()
    {
        peer.processIncomingMessages (service.context);
    }

    using Lines = std::vector<juce::String>;
};
} // namespace

TEST_F (PeerBatchTest, ThreeDiffsOfOneSpaceThenAQueryMakeOneApplicationThenTheQueryThenMirroring)
{
    post (9, { new RecordingDiffMessage ("document", "1"), new RecordingDiffMessage ("document", "2"),
               new RecordingDiffMessage ("document", "3"), new RecordingMessage ("query") });
    processBatch();
    EXPECT_EQ (peer.lines, (Lines { "diff document 1+2+3 from 9", "query from 9" }));
    EXPECT_EQ (getNumMirroringUpdates(), 1);
}

TEST_F (PeerBatchTest, DiffsOfSpacesBAndAApplyInNameOrder)
{
    post (9, { new RecordingDiffMessage ("scene", "s"), new RecordingDiffMessage ("document", "d") });
    processBatch();
    EXPECT_EQ (peer.lines, (Lines { "diff document d from 0", "diff scene s from 0" }));
}

TEST_F (PeerBatchTest, DiffsAfterTheLastOtherMessageLandWithAFreshSender)
{
    post (9, { new RecordingMessage ("a"), new RecordingDiffMessage ("document", "d") });
    processBatch();
    EXPECT_EQ (peer.lines, (Lines { "a from 9", "diff document d from 0" }));
    EXPECT_EQ (getNumMirroringUpdates(), 1);
}

TEST_F (PeerBatchTest, DiffsCoalesceAcrossEnvelopsButNeverAcrossAnotherMessage)
{
    post (9, { new RecordingDiffMessage ("document", "1") });
    post (8, { new RecordingDiffMessage ("document", "2"), new RecordingMessage ("x") });
    post (7, { new RecordingDiffMessage ("document", "3"), new RecordingDiffMessage ("scene", "4") });
    post (6, { new RecordingDiffMessage ("document", "5") });
    processBatch();
    EXPECT_EQ (peer.lines, (Lines { "diff document 1+2 from 8", "x from 8",
                                    "diff document 3+5 from 0", "diff scene 4 from 0" }));
}

TEST_F (PeerBatchTest, EachOtherMessageForcesAMirroringUpdateButAMirroringMessageDoesNot)
{
    post (9, { new RecordingMessage ("a"), new RecordingMessage ("b"), new MirroringMessage() });
    processBatch();
    EXPECT_EQ (getNumMirroringUpdates(), 2);
}

TEST_F (PeerBatchTest, AnEnvelopWithoutSenderRunsNoneOfItsMessages)
{
    auto* anonymous = new Envelop (nullptr, new RecordingMessage ("hidden"));
    anonymous->addMessage (new RecordingDiffMessage ("document", "hidden"));
    peer.getIncomingMessageTarget()->postEnvelop (anonymous);
    post (9, { new RecordingMessage ("shown") });
    processBatch();
    EXPECT_EQ (peer.lines, (Lines { "shown from 9" }));
}

TEST_F (PeerBatchTest, TheEnvelopsBelongToThePeerWhileTheirMessagesRun)
{
    class ParentCheck : public RecordingMessage
    {
    public:
        void process (ExecutionContext&, const Object&, MessageTarget& incomingTarget) const override
        {
            TestPeer::of (incomingTarget).lines.push_back (Peer::get (*this) == incomingTarget.getParent() ? "mine" : "not mine");
        }
    };
    post (9, { new ParentCheck() });
    processBatch();
    EXPECT_EQ (peer.lines, (Lines { "mine" }));
}

TEST_F (PeerBatchTest, ClearingDropsTheQueueUnprocessed)
{
    post (9, { new RecordingMessage ("a") });
    peer.clearIncomingMessages();
    processBatch();
    EXPECT_TRUE (peer.lines.empty());
}

TEST_F (PeerBatchTest, TheFirstProcessingRemembersTheThreadThatTakesTheQueue)
{
    // The test's thread is no juce::Thread: the target stays without one and never refuses.
    processBatch();
    EXPECT_EQ (peer.getIncomingMessageTarget()->getThread(), nullptr);
}
