#include "ConnectionTestSupport.h"
#include "Message/MessageTestSupport.h"
#include "Support/DeletionWatcher.h"
#include "Support/FreePort.h"
#include "Support/Waiting.h"
#include <Tov/Message/InterprocessConnectionMessageTarget.h>
#include <Tov/Message/RemoteTargetIdentifier.h>
#include <Tov/Network/InterprocessConnectionTable.h>
#include <Tov/Standard/Program.h>

using namespace tov;
using namespace tov::test;

// Envelops between peers through connections: serialised on the sender's thread, rebuilt on the
// connection's thread, and queued on the receiving peer with the sender qualified by the connection.
namespace
{
class InterprocessConnectionEnvelopTest : public MessageTest
{
protected:
    PeerService service;
    bool serviceRuns = service.startService (true);
    TestPeer& near = service.addPeer (makeIdentifier (9));
    TestPeer& far = service.addPeer (makeIdentifier (1));
    TestServer server;
    InterprocessConnection client;
    RecordingConnectionListener clientListener;

    void SetUp() override
    {
        ASSERT_TRUE (connectThroughServerForwardingToProgram (server, client, clientListener));
    }

    void TearDown() override
    {
        client.disconnect();
        client.setListener (nullptr);
    }

    bool post (const Object& target, Envelop* envelop, bool* notFound = nullptr)
    {
        return Program::get().postEnvelopToMessageTarget (target, envelop, notFound);
    }

    static RemoteTargetIdentifier remote (const InterprocessConnection& connection, int64_t target)
    {
        Owned<Integer> identifier (makeIdentifier (target));
        return RemoteTargetIdentifier (connection.getIdentifier(), *identifier);
    }

    bool hasLines (TestPeer& peer, size_t count)
    {
        return waitUntil ([&] { service.callServiceUpdate (true); return peer.lines.size() >= count; });
    }
};
} // namespace

TEST_F (InterprocessConnectionEnvelopTest, AnEnvelopToAFarTargetArrivesWithItsSenderQualifiedByTheConnection)
{
    ASSERT_TRUE (post (remote (client, 1), new Envelop (makeIdentifier (9), new RecordingMessage ("hello"))));
    ASSERT_TRUE (hasLines (far, 1));
    const auto& acceptedId = server.getConnection (0)->getIdentifier();
    EXPECT_EQ (far.lines, (std::vector<juce::String> { "hello from 9@" + acceptedId.toString ("->", {}) }));
    EXPECT_TRUE (near.lines.empty());
}

TEST_F (InterprocessConnectionEnvelopTest, AnAnswerFindsItsWayBackThroughTheConnectionItCameOn)
{
    ASSERT_TRUE (post (remote (client, 1), new Envelop (makeIdentifier (9), new AnsweringMessage ("question"))));
    ASSERT_TRUE (hasLines (near, 1));
    EXPECT_EQ (near.lines, (std::vector<juce::String> { "answer to question from 1@" + client.getIdentifier().toString ("->", {}) }));
}

TEST_F (InterprocessConnectionEnvelopTest, EnvelopsThroughOneConnectionArriveInOrder)
{
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE (post (remote (client, 1), new Envelop (makeIdentifier (9), new RecordingMessage (juce::String (i)))));
    ASSERT_TRUE (hasLines (far, 100));
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE (far.lines[(size_t) i].startsWith (juce::String (i) + " from 9@")) << far.lines[(size_t) i];
}

TEST_F (InterprocessConnectionEnvelopTest, AnUnknownConnectionIsATargetNotFound)
{
    InterprocessConnectionIdentifier gone;
    gone.localNetworkAddress.set ("127.0.0.1", 1, false);
    gone.remoteNetworkAddress.set ("127.0.0.1", 2, false);
    Owned<Integer> target (makeIdentifier (1));
    auto* envelop = new Envelop (makeIdentifier (9), new RecordingMessage ("lost"));
    DeletionWatcher watcher (*envelop);
    bool notFound = false;
    EXPECT_FALSE (post (RemoteTargetIdentifier (gone, *target), envelop, &notFound));
    EXPECT_TRUE (notFound);
    EXPECT_TRUE (watcher.deleted);
}

TEST_F (InterprocessConnectionEnvelopTest, EachConnectionAndTargetHaveOneTargetObject)
{
    Owned<Integer> one (makeIdentifier (1));
    Owned<Integer> two (makeIdentifier (2));
    auto& first = InterprocessConnectionMessageTarget::getOrCreateThrough (client, *one);
    EXPECT_EQ (&InterprocessConnectionMessageTarget::getOrCreateThrough (client, *one), &first);
    EXPECT_NE (&InterprocessConnectionMessageTarget::getOrCreateThrough (client, *two), &first);
    EXPECT_EQ (InterprocessConnectionTable::getNumTargets (client), 2u);
    InterprocessConnectionMessageTarget::reset (client);
    EXPECT_EQ (InterprocessConnectionTable::getNumTargets (client), 0u);
}

TEST_F (InterprocessConnectionEnvelopTest, TwoConnectionsToTheSameFarPeerYieldTwoTargetObjects)
{
    InterprocessConnection second;
    second.connect (HostIdentifier ("127.0.0.1"), NetworkAddress ("127.0.0.1", (unsigned int) server.getBoundPort()), 1000);
    ASSERT_TRUE (second.waitUntilIsConnected (20000));
    Owned<Integer> far (makeIdentifier (1));
    auto& throughFirst = InterprocessConnectionMessageTarget::getOrCreateThrough (client, *far);
    auto& throughSecond = InterprocessConnectionMessageTarget::getOrCreateThrough (second, *far);
    EXPECT_NE (&throughFirst, &throughSecond);
    second.disconnect();
}

TEST_F (InterprocessConnectionEnvelopTest, AConnectionOfAnotherMagicNumberCarriesNoEnvelop)
{
    InterprocessConnection other (0x12345678, true);
    other.connect (HostIdentifier ("127.0.0.1"), NetworkAddress ("127.0.0.1", (unsigned int) findFreePort()), 100);
    Owned<Integer> target (makeIdentifier (1));
    auto* envelop = new Envelop (makeIdentifier (9), new RecordingMessage ("refused"));
    DeletionWatcher watcher (*envelop);
    EXPECT_FALSE (InterprocessConnectionMessageTarget::getOrCreateThrough (other, *target).postEnvelop (envelop));
    EXPECT_TRUE (watcher.deleted);
    EXPECT_FALSE (Program::get().processReceivedNetworkMessage (other, blockOf ("anything")));
    other.disconnect();
}

TEST_F (InterprocessConnectionEnvelopTest, AnIdleConnectionRefusesEnvelops)
{
    InterprocessConnection idle (InterprocessConnection::envelopMagicNumber, true);
    Owned<Integer> target (makeIdentifier (1));
    auto* envelop = new Envelop (makeIdentifier (9), new RecordingMessage ("refused"));
    DeletionWatcher watcher (*envelop);
    EXPECT_FALSE (InterprocessConnectionMessageTarget::getOrCreateThrough (idle, *target).postEnvelop (envelop));
    EXPECT_TRUE (watcher.deleted);
}

TEST_F (InterprocessConnectionEnvelopTest, AClientBetweenTwoAttemptsKeepsEnvelopsForTheNextConnection)
{
    const int port = findFreePort();
    InterprocessConnection waiting;
    waiting.connect (HostIdentifier ("127.0.0.1"), NetworkAddress ("127.0.0.1", (unsigned int) port), 100);
    Owned<Integer> target (makeIdentifier (1));
    EXPECT_TRUE (InterprocessConnectionMessageTarget::getOrCreateThrough (waiting, *target)
                     .postEnvelop (new Envelop (makeIdentifier (9), new RecordingMessage ("kept"))));

    TestServer late (port);
    late.forwardToProgram = true;
    ExecutionContext context;
    ASSERT_TRUE (late.startServer (context));
    ASSERT_TRUE (hasLines (far, 1));
    EXPECT_TRUE (far.lines[0].startsWith ("kept from 9@127.0.0.1:" + juce::String (port) + "->")) << far.lines[0];
    waiting.disconnect();
}

TEST_F (InterprocessConnectionEnvelopTest, ATargetOfAConnectionThatIsGoneAnswersFalse)
{
    Owned<Integer> target (makeIdentifier (1));
    MessageTarget* orphan = nullptr;
    {
        InterprocessConnection shortLived (InterprocessConnection::envelopMagicNumber, true);
        orphan = new InterprocessConnectionMessageTarget (shortLived, target->clone());
    }
    auto* envelop = new Envelop (makeIdentifier (9), new RecordingMessage ("nowhere"));
    DeletionWatcher watcher (*envelop);
    EXPECT_FALSE (orphan->postEnvelop (envelop));
    EXPECT_TRUE (watcher.deleted);
    orphan->deleteThis();
}

//==============================================================================
// Envelops that a connection's thread rebuilds wait in the thread's batch and reach their peers
// when it ends; here the test's thread plays the connection's thread.
namespace
{
class PeerMapReceivedEnvelopBatchTest : public InterprocessConnectionEnvelopTest
{
protected:
    static juce::MemoryBlock wireFormOf (const juce::String& text, int64_t receiverValue)
    {
        ObjectOwnedPointer receiver;
        receiver.set (makeIdentifier (receiverValue), false);
        Owned<Envelop> envelop (new Envelop (makeIdentifier (9), new RecordingMessage (text)));
        juce::MemoryBlock block;
        envelop->saveToMemoryBlock (receiver, block);
        return block;
    }

    bool receive (const juce::String& text, int64_t receiverValue = 1)
    {
        return Program::get().processReceivedNetworkMessage (client, wireFormOf (text, receiverValue));
    }

    size_t queued() const   { return far.getIncomingMessageTarget()->getNumEnvelops(); }
};
} // namespace

TEST_F (PeerMapReceivedEnvelopBatchTest, WithoutABatchAReceivedEnvelopIsQueuedAtOnce)
{
    ASSERT_TRUE (receive ("now"));
    EXPECT_EQ (queued(), 1u);
}

TEST_F (PeerMapReceivedEnvelopBatchTest, InABatchEnvelopsAreQueuedInOrderWhenItEnds)
{
    {
        PeerMap::ReceivedEnvelopBatch batch;
        for (int i = 0; i < 3; ++i)
            ASSERT_TRUE (receive (juce::String (i)));
        EXPECT_EQ (queued(), 0u);
    }
    EXPECT_EQ (queued(), 3u);
    ASSERT_TRUE (hasLines (far, 3));
    const auto from = " from 9@" + client.getIdentifier().toString ("->", {});
    EXPECT_EQ (far.lines, (std::vector<juce::String> { "0" + from, "1" + from, "2" + from }));
}

TEST_F (PeerMapReceivedEnvelopBatchTest, ABatchInsideAnotherAddsToTheOuterOne)
{
    {
        PeerMap::ReceivedEnvelopBatch outer;
        ASSERT_TRUE (receive ("first"));
        {
            PeerMap::ReceivedEnvelopBatch inner;
            ASSERT_TRUE (receive ("second"));
        }
        EXPECT_EQ (queued(), 0u);
    }
    EXPECT_EQ (queued(), 2u);
}

TEST_F (PeerMapReceivedEnvelopBatchTest, AnEnvelopForNoPeerIsDroppedWhenTheBatchEnds)
{
    {
        PeerMap::ReceivedEnvelopBatch batch;
        EXPECT_TRUE (receive ("astray", 77));
        EXPECT_TRUE (receive ("home"));
    }
    EXPECT_EQ (queued(), 1u);
    EXPECT_EQ (near.getIncomingMessageTarget()->getNumEnvelops(), 0u);
}
