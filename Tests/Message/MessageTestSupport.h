#pragma once

#include "Support/LogTestSupport.h"
#include "Support/TestService.h"
#include "Support/TestValues.h"
#include <Tov/Atomic/Atomic.h>
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Message/Mirroring/DiffObjectSpaceMessage.h>
#include <Tov/Message/Peer.h>
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>
#include <gtest/gtest.h>
#include <atomic>
#include <map>
#include <vector>

// Peers that write down what they receive, and messages to send them.
namespace tov::test
{

/** A peer with two spaces, "document" and "scene", that keeps a line per message it runs. */
class TestPeer : public Peer
{
public:
    TOV_DECLARE_CLASS (TestPeer, Peer)

    explicit TestPeer (Object* identifier = nullptr) : Peer (identifier) {}

    ObjectSpace document { "document" };
    ObjectSpace scene { "scene" };

    /** Written on the receiving service's thread only. */
    std::vector<juce::String> lines;
    /** Of the sequence messages: the next number expected from each sender, and how many came
        out of order. */
    std::map<int64_t, int64_t> nextFromSender;
    std::atomic<int64_t> numSequenceMessages { 0 }, numOutOfOrder { 0 };

    static TestPeer& of (MessageTarget& incomingTarget) { return *static_cast<TestPeer*> (incomingTarget.getParent()); }
};

/** Writes its text and its sender into the receiving peer's lines: "text from sender". */
class RecordingMessage : public Message
{
public:
    TOV_DECLARE_CLASS (RecordingMessage, Message)

    RecordingMessage() = default;
    explicit RecordingMessage (const juce::String& newText)  { text.set (newText, false); }

    void process (ExecutionContext&, const Object& senderIdentifier, MessageTarget& incomingTarget) const override;
    juce::String toString() const override                  { return "Recording " + text.get(); }

    String text;
};

/** Writes itself down as a RecordingMessage does, then answers its sender with a
    RecordingMessage "answer to <text>". */
class AnsweringMessage : public RecordingMessage
{
public:
    TOV_DECLARE_CLASS (AnsweringMessage, RecordingMessage)
    using RecordingMessage::RecordingMessage;

    void process (ExecutionContext& context, const Object& senderIdentifier, MessageTarget& incomingTarget) const override;
};

/** A diff of a space for the routing tests: its merges and its application are written down
    as "merge <space> <text>" and "diff <space> <texts> from <sender>". */
class RecordingDiffMessage : public DiffObjectSpaceMessage
{
public:
    TOV_DECLARE_CLASS (RecordingDiffMessage, DiffObjectSpaceMessage)

    RecordingDiffMessage() = default;
    RecordingDiffMessage (const juce::String& space, const juce::String& text)
    {
        setTargetSpace (space);
        texts = text;
    }

    void merge (const DiffObjectSpaceMessage& other) override;
    void process (ExecutionContext&, const Object& senderIdentifier, MessageTarget& incomingTarget) const override;

    juce::String texts;
};

/** The n-th message from one peer to another: the receiver checks that each sender's messages
    arrive once and in order. */
class SequenceMessage : public Message
{
public:
    TOV_DECLARE_CLASS (SequenceMessage, Message)

    SequenceMessage() = default;
    SequenceMessage (int64_t fromPeer, int64_t number)
    {
        sender.set (fromPeer, false);
        sequenceNumber.set (number, false);
    }

    void process (ExecutionContext&, const Object& senderIdentifier, MessageTarget& incomingTarget) const override;

    Integer sender;
    Integer sequenceNumber;
};

/** A service holding peers, each with its own identifier, run by the test's thread or its own. */
class PeerService : public TestService
{
public:
    explicit PeerService (const juce::String& name = "Peers") : TestService (name) {}
    ~PeerService() override;

    void getPeers (std::vector<Peer*>& result) override;

    /** A new peer of the service under that identifier. */
    TestPeer& addPeer (Object* identifier);

    std::vector<TestPeer*> peers;
};

/** An Integer object of that value, not in any space. */
Integer* makeIdentifier (int64_t value);

/** Makes the classes of these tests known to the library tree; safe to call more than once. */
void ensureMessageTestLibrary();

/** A running program with the message test classes. */
class MessageTest : public ::testing::Test
{
protected:
    TestProgram program;
    bool libraryIsThere = (ensureMessageTestLibrary(), true);
};

} // namespace tov::test
