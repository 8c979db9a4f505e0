#include "ConnectionTestSupport.h"
#include "Message/MessageTestSupport.h"
#include "Support/DebugOutputCapture.h"
#include "Support/Waiting.h"
#include <Tov/Message/Envelop.h>
#include <Tov/Network/FrameReader.h>
#include <Tov/Network/TcpSocket.h>
#include <Tov/Standard/ExecutionContextView.h>
#include <Tov/Standard/Program.h>
#include <poll.h>
#include <sys/socket.h>

using namespace tov;
using namespace tov::test;

// A peer that does not play by the rules: raw bytes on a socket to a server.
namespace
{
std::string header (juce::uint32 magic, juce::uint32 size)
{
    std::string bytes (FrameReader::headerSize, '\0');
    FrameReader::writeHeader (magic, size, bytes.data());
    return bytes;
}

std::string frame (const std::string& block, juce::uint32 magic = InterprocessConnection::envelopMagicNumber)
{
    return header (magic, (juce::uint32) block.size()) + block;
}

class InterprocessConnectionHostilePeerTest : public ::testing::Test
{
protected:
    DebugOutputCapture debugOutput;
    TestServer server;
    std::unique_ptr<TcpSocket> peer;

    void SetUp() override
    {
        ExecutionContext context;
        ASSERT_TRUE (server.startServer (context));
        peer = TcpSocket::connect ("127.0.0.1", server.getBoundPort(), 5000);
        ASSERT_NE (peer, nullptr);
        ASSERT_TRUE (server.waitForConnections (1));
    }

    void send (const std::string& bytes)
    {
        ASSERT_EQ (::send (peer->getHandle(), bytes.data(), bytes.size(), MSG_NOSIGNAL), (ssize_t) bytes.size());
    }

    /** True once the server has closed the connection: the peer reads the end of the stream. */
    bool peerSeesTheEnd()
    {
        return waitUntil ([this]
        {
            pollfd descriptor { peer->getHandle(), POLLIN, 0 };
            if (poll (&descriptor, 1, 100) <= 0)
                return false;
            char byte;
            const auto received = recv (peer->getHandle(), &byte, 1, MSG_DONTWAIT);
            return received == 0 || (received < 0 && errno != EAGAIN);
        });
    }

    std::vector<std::string> blocks() const
    {
        std::vector<std::string> result;
        for (auto& event : server.events.get())
            if (event.rfind ("block", 0) == 0)
                result.push_back (event);
        return result;
    }
};
} // namespace

TEST_F (InterprocessConnectionHostilePeerTest, AWrongMagicNumberClosesTheConnection)
{
    send (frame ("good") + frame ("bad", 0x12345678));
    EXPECT_TRUE (peerSeesTheEnd());
    EXPECT_TRUE (debugOutput.waitFor ("== NETWORK SERVER == Disconnected from "));
    EXPECT_EQ (blocks(), (std::vector<std::string> { "block good" }));
    EXPECT_TRUE (server.waitForConnections (0));
}

TEST_F (InterprocessConnectionHostilePeerTest, ALengthOf2To31ClosesTheConnection)
{
    send (header (InterprocessConnection::envelopMagicNumber, 0x80000000u) + "some bytes of a block that never ends");
    EXPECT_TRUE (peerSeesTheEnd());
    EXPECT_TRUE (blocks().empty());
    EXPECT_TRUE (server.waitForConnections (0));
}

TEST_F (InterprocessConnectionHostilePeerTest, AFrameCutInTheMiddleIsDroppedWhenThePeerCloses)
{
    send (frame ("whole") + header (InterprocessConnection::envelopMagicNumber, 100) + std::string (50, 'x'));
    ASSERT_TRUE (server.events.waitForCount ("block whole", 1));
    peer.reset();
    EXPECT_TRUE (debugOutput.waitFor ("== NETWORK SERVER == Disconnected from "));
    EXPECT_TRUE (server.waitForConnections (0));
    EXPECT_EQ (blocks(), (std::vector<std::string> { "block whole" }));
}

TEST_F (InterprocessConnectionHostilePeerTest, APeerThatVanishesIsRemovedAtTheNextUpdate)
{
    auto& accepted = *server.getConnection (0);
    const juce::String name = accepted.getFriendlyName();
    peer.reset();
    EXPECT_TRUE (debugOutput.waitFor ("== NETWORK SERVER == Disconnected from " + name.toStdString() + "\n"));
    EXPECT_TRUE (server.waitForConnections (0));
    EXPECT_NE (debugOutput.getText().find ("Remove Interprocess Connection " + name.toStdString() + "\n"), std::string::npos);
}

//==============================================================================
namespace
{
/** Errors reported on the program's context, from any thread. */
class ProgramErrors : public ExecutionContextView
{
public:
    explicit ProgramErrors (EventRecord& r) : record (r) {}
    void errorCallback (const juce::String& message, const Object*) override   { record.add ("error " + message.toStdString()); }
    EventRecord& record;
};

class InterprocessConnectionGarbageTest : public MessageTest
{
protected:
    PeerService service;
    bool serviceRuns = service.startService (true);
    TestPeer& peer = service.addPeer (makeIdentifier (1));
    TestServer server;
    std::unique_ptr<TcpSocket> socket;
    EventRecord errors;

    void SetUp() override
    {
        Program::get().getProgramExecutionContext().addView (new ProgramErrors (errors));
        server.forwardToProgram = true;
        ExecutionContext context;
        ASSERT_TRUE (server.startServer (context));
        socket = TcpSocket::connect ("127.0.0.1", server.getBoundPort(), 5000);
        ASSERT_NE (socket, nullptr);
        ASSERT_TRUE (server.waitForConnections (1));
    }

    void send (const std::string& bytes)
    {
        ASSERT_EQ (::send (socket->getHandle(), bytes.data(), bytes.size(), MSG_NOSIGNAL), (ssize_t) bytes.size());
    }

    static std::string wireFormOf (Envelop* envelop, int64_t receiverValue)
    {
        ObjectOwnedPointer receiver;
        receiver.set (makeIdentifier (receiverValue), false);
        juce::MemoryBlock block;
        envelop->saveToMemoryBlock (receiver, block);
        envelop->deleteThis();
        return textOf (block);
    }

    bool peerHasLines (size_t count)
    {
        return waitUntil ([&] { service.callServiceUpdate (true); return peer.lines.size() >= count; });
    }
};
} // namespace

TEST_F (InterprocessConnectionGarbageTest, AnUnparsableBlockIsDroppedWithTheParsersErrorWhileTheConnectionStays)
{
    send (frame ("this is no binary state"));
    ASSERT_TRUE (errors.waitForCount ("error Unexpected binary stream version: 52", 1, 20000)) << ::testing::PrintToString (errors.get());
    send (frame (wireFormOf (new Envelop (makeIdentifier (9), new RecordingMessage ("after")), 1)));
    ASSERT_TRUE (peerHasLines (1));
    EXPECT_TRUE (peer.lines[0].startsWith ("after from 9@127.0.0.1:")) << peer.lines[0];
    EXPECT_TRUE (server.getConnection (0)->isConnected());
}

TEST_F (InterprocessConnectionGarbageTest, AnEnvelopWithoutSenderIsDropped)
{
    send (frame (wireFormOf (new Envelop (nullptr, new RecordingMessage ("anonymous")), 1)));
    send (frame (wireFormOf (new Envelop (makeIdentifier (9), new RecordingMessage ("signed")), 1)));
    ASSERT_TRUE (peerHasLines (1));
    service.callServiceUpdate (true);
    ASSERT_EQ (peer.lines.size(), 1u);
    EXPECT_TRUE (peer.lines[0].startsWith ("signed from 9@")) << peer.lines[0];
}

TEST_F (InterprocessConnectionGarbageTest, AStateWithoutReceiverIsRefusedWithItsErrorWhileTheConnectionStays)
{
    State root;
    auto* envelop = new Envelop (makeIdentifier (9), new RecordingMessage ("lost"));
    root.addVariable ("envelop", envelop->makeState (false, true));
    envelop->deleteThis();
    juce::MemoryBlock block;
    {
        juce::MemoryOutputStream output (block, false);
        ASSERT_TRUE (root.toBinary (output));
    }
    send (frame (textOf (block)));
    ASSERT_TRUE (errors.waitForCount ("error Missing envelop or receiver state", 1));
    send (frame (wireFormOf (new Envelop (makeIdentifier (9), new RecordingMessage ("next")), 1)));
    ASSERT_TRUE (peerHasLines (1));
    EXPECT_TRUE (peer.lines[0].startsWith ("next from 9@")) << peer.lines[0];
}
