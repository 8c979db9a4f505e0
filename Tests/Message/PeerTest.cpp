#include "MessageTestSupport.h"
#include "Support/DeletionWatcher.h"
#include <Tov/Standard/Program.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** A service on the test's thread with one peer, "1". */
class PeerTest : public MessageTest
{
protected:
    PeerService service;
    bool serviceRuns = service.startService (true);
    TestPeer& peer = service.addPeer (makeIdentifier (1));

    /** Posts through the program to the peer of that identifier. */
    bool post (int64_t target, Envelop* envelop, bool* notFound = nullptr)
    {
        Owned<Integer> identifier (makeIdentifier (target));
        return Program::get().postEnvelopToMessageTarget (*identifier, envelop, notFound);
    }

    static Envelop* envelopFrom (int64_t sender, std::initializer_list<Message*> messages)
    {
        auto* envelop = new Envelop (makeIdentifier (sender), nullptr);
        for (auto* message : messages)
            envelop->addMessage (message);
        return envelop;
    }
};
} // namespace

TEST_F (PeerTest, AnEnvelopPostedToAPeerRunsInItsServicesPassInOrder)
{
    EXPECT_TRUE (post (1, envelopFrom (9, { new RecordingMessage ("a"), new RecordingMessage ("b") })));
    EXPECT_TRUE (post (1, envelopFrom (8, { new RecordingMessage ("c") })));
    EXPECT_TRUE (peer.lines.empty());
    EXPECT_EQ (peer.getIncomingMessageTarget()->getNumEnvelops(), 2u);

    service.callServiceUpdate (true);
    EXPECT_EQ (peer.lines, (std::vector<juce::String> { "a from 9", "b from 9", "c from 8" }));
    EXPECT_EQ (peer.getIncomingMessageTarget()->getNumEnvelops(), 0u);
}

TEST_F (PeerTest, AProcessedEnvelopIsDeletedAfterTheBatch)
{
    auto* envelop = envelopFrom (9, { new RecordingMessage ("a") });
    DeletionWatcher watcher (*envelop);
    post (1, envelop);
    service.callServiceUpdate (true);
    EXPECT_TRUE (watcher.deleted);
}

TEST_F (PeerTest, ALocalEnvelopWithoutSenderReachesThePeerAndIsSkipped)
{
    auto* envelop = new Envelop (nullptr, new RecordingMessage ("a"));
    DeletionWatcher watcher (*envelop);
    EXPECT_TRUE (post (1, envelop));
    EXPECT_EQ (peer.getIncomingMessageTarget()->getNumEnvelops(), 1u);
    service.callServiceUpdate (true);
    EXPECT_TRUE (peer.lines.empty());
    EXPECT_TRUE (watcher.deleted);
}

TEST_F (PeerTest, APostToAnUnknownPeerReportsNotFoundAndDeletesTheEnvelop)
{
    auto* envelop = envelopFrom (9, { new RecordingMessage ("a") });
    DeletionWatcher watcher (*envelop);
    bool notFound = false;
    EXPECT_FALSE (post (2, envelop, &notFound));
    EXPECT_TRUE (notFound);
    EXPECT_TRUE (watcher.deleted);
}

TEST_F (PeerTest, APostOfAnEmptyEnvelopThroughTheProgramSucceedsAndDeliversNothing)
{
    bool notFound = true;
    EXPECT_TRUE (post (2, new Envelop (makeIdentifier (9), nullptr), &notFound));
    EXPECT_FALSE (notFound);
    EXPECT_TRUE (post (1, new Envelop (makeIdentifier (9), nullptr), &notFound));
    EXPECT_EQ (peer.getIncomingMessageTarget()->getNumEnvelops(), 0u);
}

TEST_F (PeerTest, GetFindsThePeerAboveAnObjectOrAboveItsSpace)
{
    EXPECT_EQ (peer.getSpaceByName ("document"), &peer.document);
    EXPECT_EQ (peer.document.getParent(), &peer);

    auto* root = create<Shape>();
    peer.document.setRootObject (root, true);
    EXPECT_EQ (Peer::get (*root), &peer);
    EXPECT_EQ (Peer::get (peer.document), &peer);

    Integer child;
    child.setParent (peer.getIncomingMessageTarget());
    EXPECT_EQ (Peer::get (child), &peer);

    Integer orphan;
    EXPECT_EQ (Peer::get (orphan), nullptr);
}

TEST_F (PeerTest, SpacesAreFoundByNameInDeclarationOrder)
{
    EXPECT_EQ (peer.getSpaces(), (std::vector<ObjectSpace*> { &peer.document, &peer.scene }));
    EXPECT_EQ (peer.getSpaceByName ("scene"), &peer.scene);
    EXPECT_EQ (peer.getSpaceByName ("audio"), nullptr);
}

TEST_F (PeerTest, APeerMadeWithoutIdentifierRegistersLater)
{
    auto& late = service.addPeer (nullptr);
    EXPECT_FALSE (post (2, envelopFrom (9, { new RecordingMessage ("lost") })));
    Owned<Integer> two (makeIdentifier (2)), three (makeIdentifier (3));
    EXPECT_TRUE (late.storeIdentifierAndRegisterToPeerManager (*two));
    EXPECT_TRUE (late.storeIdentifierAndRegisterToPeerManager (*two));
    EXPECT_FALSE (late.storeIdentifierAndRegisterToPeerManager (*three));
    EXPECT_TRUE (post (2, envelopFrom (9, { new RecordingMessage ("found") })));
    service.callServiceUpdate (true);
    EXPECT_EQ (late.lines, (std::vector<juce::String> { "found from 9" }));
}

TEST_F (PeerTest, ATakenIdentifierIsRefusedAndADeadPeerIsNotFound)
{
    Owned<Integer> one (makeIdentifier (1));
    auto* twin = new TestPeer();
    EXPECT_FALSE (twin->storeIdentifierAndRegisterToPeerManager (*one));
    twin->deleteThis();
    // The twin's end does not take the first peer's entry with it.
    EXPECT_TRUE (post (1, envelopFrom (9, { new RecordingMessage ("a") })));

    auto* other = new TestPeer (makeIdentifier (4));
    EXPECT_EQ (Program::get().getPeerMap().getNumPeers(), 2u);
    other->deleteThis();
    EXPECT_EQ (Program::get().getPeerMap().getNumPeers(), 1u);
    bool notFound = false;
    EXPECT_FALSE (post (4, envelopFrom (9, { new RecordingMessage ("a") }), &notFound));
    EXPECT_TRUE (notFound);
}
