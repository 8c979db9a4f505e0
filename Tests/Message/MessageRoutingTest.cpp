#include "MessageTestSupport.h"
#include <Tov/Message/RemoteTargetIdentifier.h>
#include <Tov/Standard/Program.h>

using namespace tov;
using namespace tov::test;

namespace
{
class MessageRoutingTest : public MessageTest
{
protected:
    PeerService service;
    bool serviceRuns = service.startService (true);

    /** A remote target identifier for that far identifier, on no connection. */
    static RemoteTargetIdentifier* makeRemote (int64_t target)
    {
        auto* remote = create<RemoteTargetIdentifier>();
        static_cast<ObjectOwnedPointer*> (remote->getVariableByName ("targetIdentifier"))->set (makeIdentifier (target), false);
        return remote;
    }
};
} // namespace

TEST_F (MessageRoutingTest, ARemoteTargetIdentifierComparesByItsTargetsValue)
{
    Owned<RemoteTargetIdentifier> a (makeRemote (3)), b (makeRemote (3)), c (makeRemote (4));
    ASSERT_NE (a->getTargetIdentifier(), nullptr);
    EXPECT_EQ (a->getTargetIdentifier()->toString(), "3");
    EXPECT_TRUE (a->equals (*b));
    EXPECT_FALSE (a->equals (*c));
    EXPECT_EQ (a->computeHash(), b->computeHash());
    EXPECT_FALSE (a->isValid());
}

TEST_F (MessageRoutingTest, ARemoteTargetIdentifierThatIsNotValidNamesALocalPeer)
{
    auto& peer = service.addPeer (makeRemote (3));
    Owned<RemoteTargetIdentifier> target (makeRemote (3));
    bool notFound = true;
    EXPECT_TRUE (Program::get().postEnvelopToMessageTarget (*target, new Envelop (makeIdentifier (9), new RecordingMessage ("a")), &notFound));
    EXPECT_FALSE (notFound);
    service.callServiceUpdate (true);
    EXPECT_EQ (peer.lines, (std::vector<juce::String> { "a from 9" }));
}

TEST_F (MessageRoutingTest, PeersOfEqualIdentifiersOfDifferentClassesAreDifferentPeers)
{
    auto& integerPeer = service.addPeer (makeIdentifier (3));
    auto* text = create<String>();
    text->set ("3", false);
    auto& stringPeer = service.addPeer (text);
    EXPECT_EQ (Program::get().getPeerMap().getNumPeers(), 2u);

    Owned<String> target (create<String>());
    target->set ("3", false);
    EXPECT_TRUE (Program::get().postEnvelopToMessageTarget (*target, new Envelop (makeIdentifier (9), new RecordingMessage ("a")), nullptr));
    service.callServiceUpdate (true);
    EXPECT_TRUE (integerPeer.lines.empty());
    EXPECT_EQ (stringPeer.lines, (std::vector<juce::String> { "a from 9" }));
}

TEST_F (MessageRoutingTest, APeerPostsToItselfThroughItsOwnIdentifier)
{
    auto& peer = service.addPeer (makeIdentifier (3));
    auto* envelop = peer.getIncomingMessageTarget()->createEnvelopAsSender (new RecordingMessage ("self"), nullptr);
    Owned<Integer> three (makeIdentifier (3));
    EXPECT_TRUE (Program::get().postEnvelopToMessageTarget (*three, envelop, nullptr));
    service.callServiceUpdate (true);
    EXPECT_EQ (peer.lines, (std::vector<juce::String> { "self from 3" }));
}
