#include "ConnectionTestSupport.h"
#include "Support/DebugOutputCapture.h"
#include "Support/FreePort.h"
#include "Support/Waiting.h"
#include <Tov/Network/InterprocessConnectionTable.h>
#include <algorithm>
#include <future>
#include <thread>

using namespace tov;
using namespace tov::test;

namespace
{
using InterprocessConnectionTest = ConnectionTest;

juce::String endpoint (const LocalNetworkAddress& address)     { return address.getLocalIp() + ":" + juce::String (address.getLocalPort()); }
juce::String endpoint (const NetworkAddress& address)          { return address.toString(); }
} // namespace

TEST_F (InterprocessConnectionTest, BothEndsKnowTheirBoundAndRemoteAddresses)
{
    connectClient();
    const int serverPort = server.getBoundPort();
    auto& clientId = client.getIdentifier();
    auto& acceptedId = accepted().getIdentifier();

    EXPECT_EQ (clientId.localNetworkAddress.getLocalIp(), "127.0.0.1");
    EXPECT_NE (clientId.localNetworkAddress.getLocalPort(), 0u);
    EXPECT_EQ (endpoint (clientId.remoteNetworkAddress), "127.0.0.1:" + juce::String (serverPort));
    EXPECT_EQ (client.getRemoteHostName().get(), "127.0.0.1");

    EXPECT_EQ (endpoint (acceptedId.localNetworkAddress), "127.0.0.1:" + juce::String (serverPort));
    EXPECT_EQ (endpoint (acceptedId.remoteNetworkAddress), endpoint (clientId.localNetworkAddress));
    EXPECT_EQ (accepted().getRemoteHostName().get(), "127.0.0.1");
}

TEST_F (InterprocessConnectionTest, FriendlyNamesPointFromTheClientAndToTheServer)
{
    connectClient();
    const juce::String serverSide = "127.0.0.1:" + juce::String (server.getBoundPort());
    const juce::String clientSide = endpoint (client.getIdentifier().localNetworkAddress);
    EXPECT_EQ (client.getFriendlyName(), clientSide + "->" + serverSide);
    EXPECT_EQ (accepted().getFriendlyName(), serverSide + "<-" + clientSide);

    client.description.set ("studio", false);
    EXPECT_EQ (client.getFriendlyName(), clientSide + "->" + serverSide + " [studio]");
}

TEST_F (InterprocessConnectionTest, OnlyTheClientIsAnActiveConnection)
{
    connectClient();
    EXPECT_TRUE (client.isActiveConnection());
    EXPECT_FALSE (accepted().isActiveConnection());
    EXPECT_TRUE (accepted().isConnected());
    EXPECT_EQ (clientListener.events.get(), (std::vector<std::string> { "made" }));
    EXPECT_EQ (server.events.count ("started"), 1u);
}

TEST_F (InterprocessConnectionTest, BlocksGoBothWaysInPushOrder)
{
    connectClient();
    for (int i = 0; i < 200; ++i)
        client.pushMessageToSend (blockOf ("to server " + std::to_string (i)));
    ASSERT_TRUE (server.events.waitForCount ("block to server 199", 1));
    std::vector<std::string> expected { "status Success " , "started" };
    for (int i = 0; i < 200; ++i)
        expected.push_back ("block to server " + std::to_string (i));
    EXPECT_EQ (server.events.get(), expected);

    accepted().pushMessageToSend (blockOf ("to client"));
    ASSERT_TRUE (clientListener.events.waitForCount ("block to client", 1));
}

TEST_F (InterprocessConnectionTest, LargeBlocksArriveWhole)
{
    connectClient();
    std::string large (3 * 1024 * 1024, '\0');
    for (size_t i = 0; i < large.size(); ++i)
        large[i] = (char) ('a' + i % 26);
    client.pushMessageToSend (blockOf (large));
    client.pushMessageToSend (blockOf ("after"));
    ASSERT_TRUE (server.events.waitForCount ("block after", 1));
    EXPECT_EQ (server.events.count ("block " + large), 1u);
}

TEST_F (InterprocessConnectionTest, MessagesPushedBeforeTheClientEverConnectedArriveInOrderOnceItConnects)
{
    const int port = findFreePort();
    client.setListener (&clientListener);
    client.connect (HostIdentifier ("127.0.0.1"), NetworkAddress ("127.0.0.1", (unsigned int) port), 100);
    client.pushMessageToSend (blockOf ("one"));
    client.pushMessageToSend (blockOf ("two"));
    client.pushMessageToSend (blockOf ("three"));
    EXPECT_FALSE (client.isConnected());

    TestServer late (port);
    ExecutionContext context;
    ASSERT_TRUE (late.startServer (context));
    ASSERT_TRUE (late.events.waitForCount ("block three", 1));
    // The server listens before it reports its status, so the client's retry may already have
    // delivered its blocks by then: only the blocks' order is fixed.
    auto events = late.events.get();
    EXPECT_EQ (std::count (events.begin(), events.end(), "status Success "), 1);
    events.erase (std::remove (events.begin(), events.end(), "status Success "), events.end());
    EXPECT_EQ (events, (std::vector<std::string> { "block one", "block two", "block three" }));
}

TEST_F (InterprocessConnectionTest, WaitingForTheQueueOfADisconnectedConnectionFailsAtOnce)
{
    InterprocessConnection idle;
    idle.pushMessageToSend (blockOf ("a"));
    idle.pushMessageToSend (blockOf ("b"));
    const auto start = juce::Time::getMillisecondCounter();
    EXPECT_FALSE (idle.waitUntilAllMessagesAreSent (10000));
    EXPECT_LT (juce::Time::getMillisecondCounter() - start, 5000u);
}

TEST_F (InterprocessConnectionTest, WaitingForAnEmptyQueueSucceedsAtOnce)
{
    InterprocessConnection idle;
    EXPECT_TRUE (idle.waitUntilAllMessagesAreSent (0));
    idle.pushMessageToSend (blockOf ("a"));
    idle.discardMessagesToSend();
    EXPECT_TRUE (idle.waitUntilAllMessagesAreSent (0));
}

TEST_F (InterprocessConnectionTest, WaitingForAConnectionTimesOut)
{
    InterprocessConnection idle;
    EXPECT_FALSE (idle.waitUntilIsConnected (20));
}

TEST_F (InterprocessConnectionTest, AConnectionDeletedWhileDisconnectedDiscardsItsQueueWithoutWarning)
{
    DebugOutputCapture debugOutput;
    {
        InterprocessConnection idle;
        idle.pushMessageToSend (blockOf ("never sent"));
    }
    EXPECT_EQ (debugOutput.getText().find ("not all messages"), std::string::npos);
}

TEST_F (InterprocessConnectionTest, AConnectedConnectionThatCannotEmptyItsQueueWarnsWhenDeleted)
{
    DebugOutputCapture debugOutput;
    TestServer slow;
    ExecutionContext context;
    ASSERT_TRUE (slow.startServer (context));
    auto* connection = new InterprocessConnection();
    RecordingConnectionListener listener;
    std::promise<void> release;
    auto released = release.get_future().share();
    // The connection's thread is held in a callback, so that it cannot take the queue.
    listener.beforeBlock = [released] { released.wait(); };
    connection->setListener (&listener);
    connection->connect (HostIdentifier ("127.0.0.1"), NetworkAddress ("127.0.0.1", (unsigned int) slow.getBoundPort()), 1000);
    ASSERT_TRUE (connection->waitUntilIsConnected (20000));
    ASSERT_TRUE (slow.waitForConnections (1));
    slow.getConnection (0)->pushMessageToSend (blockOf ("hold"));
    ASSERT_TRUE (waitUntil ([&] { return slow.getConnection (0)->waitUntilAllMessagesAreSent (0); }));
    connection->pushMessageToSend (blockOf ("stuck"));

    std::thread releaser ([&] { debugOutput.waitFor ("Warning: not all messages were sent when deleting the ClientConnection"); release.set_value(); });
    delete connection;
    releaser.join();
    EXPECT_NE (debugOutput.getText().find ("Warning: not all messages were sent when deleting the ClientConnection\n"), std::string::npos);
}

TEST_F (InterprocessConnectionTest, DisconnectClearsTheAddressesAndReportsTheLossOnce)
{
    connectClient();
    client.disconnect();
    EXPECT_FALSE (client.isConnected());
    EXPECT_FALSE (client.isActiveConnection());
    EXPECT_EQ (client.getIdentifier().localNetworkAddress.getLocalIp(), "");
    EXPECT_EQ (client.getIdentifier().localNetworkAddress.getLocalPort(), 0u);
    EXPECT_EQ (client.getIdentifier().remoteNetworkAddress.getHost(), "");
    EXPECT_EQ (client.getIdentifier().remoteNetworkAddress.getPort(), 1u);
    EXPECT_EQ (client.getRemoteHostName().get(), "");
    EXPECT_EQ (clientListener.events.get(), (std::vector<std::string> { "made", "lost" }));
}

TEST_F (InterprocessConnectionTest, AnAcceptedConnectionKeepsItsIdentifierWhenLost)
{
    connectClient();
    const juce::String name = accepted().getFriendlyName();
    client.disconnect();
    ASSERT_TRUE (waitUntil ([&] { return ! accepted().isConnected(); }));
    EXPECT_EQ (accepted().getFriendlyName(), name);
}

TEST_F (InterprocessConnectionTest, AClientConnectsAgainWhenTheServerComesBack)
{
    connectClient (100);
    const int port = server.getBoundPort();
    ExecutionContext context;
    server.stopServer (context);
    ASSERT_TRUE (clientListener.events.waitForCount ("lost", 1));

    TestServer again (port);
    ASSERT_TRUE (again.startServer (context));
    ASSERT_TRUE (clientListener.events.waitForCount ("made", 2));
    client.pushMessageToSend (blockOf ("back"));
    ASSERT_TRUE (again.events.waitForCount ("block back", 1));
}

TEST_F (InterprocessConnectionTest, TheHostNameIsTriedWhenTheAddressFails)
{
    ExecutionContext context;
    ASSERT_TRUE (server.startServer (context));
    client.connect (HostIdentifier ("localhost"), NetworkAddress ("no.such.host.invalid", (unsigned int) server.getBoundPort()), 200);
    ASSERT_TRUE (client.waitUntilIsConnected (20000));
    EXPECT_EQ (client.getRemoteHostName().get(), "localhost");
    EXPECT_EQ (client.getIdentifier().remoteNetworkAddress.getHost(), "localhost");
}

TEST_F (InterprocessConnectionTest, GetByIdentifierFindsEachEnd)
{
    connectClient();
    EXPECT_EQ (InterprocessConnection::getByIdentifier (client.getIdentifier()), &client);
    EXPECT_EQ (InterprocessConnection::getByIdentifier (accepted().getIdentifier()), &accepted());

    InterprocessConnectionIdentifier other;
    client.getIdentifier().copyTo (other);
    other.remoteNetworkAddress.set ("127.0.0.1", 1, false);
    EXPECT_EQ (InterprocessConnection::getByIdentifier (other), nullptr);
}

TEST_F (InterprocessConnectionTest, GetByIdentifierOfAnInvalidIdentifierAnswersWithoutTheLock)
{
    InterprocessConnectionIdentifier invalid;
    invalid.localNetworkAddress.set ("127.0.0.1", 4000, false);
    invalid.remoteNetworkAddress.set ("", 1, false);

    std::promise<void> locked, release;
    std::thread holder ([&]
    {
        const juce::ScopedLock lock (InterprocessConnectionTable::getLock());
        locked.set_value();
        release.get_future().wait();
    });
    locked.get_future().wait();
    auto answer = std::async (std::launch::async, [&] { return InterprocessConnection::getByIdentifier (invalid); });
    const bool answeredAtOnce = answer.wait_for (std::chrono::seconds (10)) == std::future_status::ready;
    release.set_value();
    holder.join();
    EXPECT_TRUE (answeredAtOnce);
    EXPECT_EQ (answer.get(), nullptr);
}

TEST_F (InterprocessConnectionTest, ADeletedConnectionLeavesTheTable)
{
    InterprocessConnectionIdentifier id;
    {
        connectClient();
        accepted().getIdentifier().copyTo (id);
        ASSERT_EQ (InterprocessConnection::getByIdentifier (id), &accepted());
        ExecutionContext context;
        server.stopServer (context);
    }
    EXPECT_EQ (InterprocessConnection::getByIdentifier (id), nullptr);
}

TEST_F (InterprocessConnectionTest, AnAcceptedConnectionThatDisconnectsInsideItsCallbackEndsWithoutWaitingForItself)
{
    connectClient();
    RecordingConnectionListener acceptedListener;
    acceptedListener.beforeBlock = [this] { accepted().disconnect(); };
    accepted().setListener (&acceptedListener);
    client.pushMessageToSend (blockOf ("bye"));
    ASSERT_TRUE (acceptedListener.events.waitForCount ("lost", 1));
    EXPECT_EQ (acceptedListener.events.get(), (std::vector<std::string> { "block bye", "lost" }));
    EXPECT_FALSE (accepted().isConnected());
    ASSERT_TRUE (clientListener.events.waitForCount ("lost", 1));
    // Waits for the connection's thread, which may still be leaving the listener.
    accepted().disconnect();
    accepted().setListener (nullptr);
}
