#include "MessageTestSupport.h"
#include <Tov/Core/Library.h>
#include <Tov/Standard/Program.h>

namespace tov::test
{

TOV_BEGIN_CLASS (TestPeer)
    TOV_VARIABLE (document)
    TOV_VARIABLE (scene)
TOV_END_CLASS()

TOV_BEGIN_CLASS (RecordingMessage)
    TOV_VARIABLE (text)
TOV_END_CLASS()

TOV_BEGIN_CLASS (AnsweringMessage)
TOV_END_CLASS()

TOV_BEGIN_CLASS (RecordingDiffMessage)
TOV_END_CLASS()

TOV_BEGIN_CLASS (SequenceMessage)
    TOV_VARIABLE (sender)
    TOV_VARIABLE (sequenceNumber)
TOV_END_CLASS()

void SequenceMessage::process (ExecutionContext&, const Object&, MessageTarget& incomingTarget) const
{
    auto& peer = TestPeer::of (incomingTarget);
    auto& expected = peer.nextFromSender[sender.get()];
    if (sequenceNumber.get() != expected)
        ++peer.numOutOfOrder;
    expected = sequenceNumber.get() + 1;
    ++peer.numSequenceMessages;
}

void RecordingMessage::process (ExecutionContext&, const Object& senderIdentifier, MessageTarget& incomingTarget) const
{
    TestPeer::of (incomingTarget).lines.push_back (text.get() + " from " + senderIdentifier.toString());
}

void AnsweringMessage::process (ExecutionContext& context, const Object& senderIdentifier, MessageTarget& incomingTarget) const
{
    RecordingMessage::process (context, senderIdentifier, incomingTarget);
    auto* answer = incomingTarget.createEnvelopAsSender (new RecordingMessage ("answer to " + text.get()), nullptr);
    Program::get().postEnvelopToMessageTarget (senderIdentifier, answer, nullptr);
}

void RecordingDiffMessage::merge (const DiffObjectSpaceMessage& other)
{
    texts << "+" << static_cast<const RecordingDiffMessage&> (other).texts;
}

void RecordingDiffMessage::process (ExecutionContext&, const Object& senderIdentifier, MessageTarget& incomingTarget) const
{
    TestPeer::of (incomingTarget).lines.push_back ("diff " + getTargetSpace() + " " + texts + " from " + senderIdentifier.toString());
}

//==============================================================================
PeerService::~PeerService()
{
    stopService (5000);
    for (auto* peer : peers)
        peer->deleteThis();
}

void PeerService::getPeers (std::vector<Peer*>& result)
{
    result.insert (result.end(), peers.begin(), peers.end());
}

TestPeer& PeerService::addPeer (Object* identifier)
{
    auto* peer = new TestPeer (identifier);
    peer->setParent (this);
    peers.push_back (peer);
    return *peer;
}

Integer* makeIdentifier (int64_t value)
{
    auto* identifier = create<Integer>();
    identifier->set (value, false);
    return identifier;
}

void ensureMessageTestLibrary()
{
    TestProgram::ensureTestLibraryTree();
    auto* root = Library::getRootLibrary();
    if (root->getLibraryByName ("MessageTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("MessageTests", {});
    library->addClass<TestPeer>();
    library->addClass<RecordingMessage>();
    library->addClass<AnsweringMessage>();
    library->addClass<RecordingDiffMessage>();
    library->addClass<SequenceMessage>();
    root->addLibrary (library);
}

} // namespace tov::test
