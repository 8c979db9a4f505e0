#include "ConnectionTestSupport.h"
#include "Support/DebugOutputCapture.h"
#include "Support/FreePort.h"
#include <Tov/Network/TcpSocket.h>

using namespace tov;
using namespace tov::test;

namespace
{
using Lines = std::vector<juce::String>;
using ConnectionServerTest = ConnectionTest;
} // namespace

TEST_F (ConnectionServerTest, StartingOpensABlockThatStaysOpen)
{
    const int port = findFreePort();
    TestServer fixed (port);
    LineRecordingContext context;
    EXPECT_TRUE (fixed.startServer (context));
    EXPECT_TRUE (fixed.getRunning());
    EXPECT_EQ (context.lines, (Lines { "enter Starting server listening on: 127.0.0.1:" + juce::String (port) }));
    EXPECT_EQ (fixed.events.get(), (std::vector<std::string> { "status Success " }));
    EXPECT_EQ (fixed.getBoundPort(), port);
}

TEST_F (ConnectionServerTest, StartingARunningServerFails)
{
    LineRecordingContext context;
    ASSERT_TRUE (server.startServer (context));
    EXPECT_FALSE (server.startServer (context));
    EXPECT_EQ (context.lines.size(), 1u);
}

TEST_F (ConnectionServerTest, APortInUseIsReportedOnceThenOkWhenItComesFree)
{
    const int port = findFreePort();
    const juce::String address = "127.0.0.1:" + juce::String (port);
    auto occupant = TcpSocket::listen ("127.0.0.1", port);
    ASSERT_NE (occupant, nullptr);

    TestServer blocked (port);
    LineRecordingContext context;
    EXPECT_FALSE (blocked.startServer (context));
    EXPECT_FALSE (blocked.getRunning());
    EXPECT_EQ (context.lines, (Lines { "enter Starting server listening on: " + address,
                                       "error Failed to start server on: " + address,
                                       "leave" }));
    EXPECT_FALSE (blocked.startServer (context));
    EXPECT_FALSE (blocked.startServer (context));
    EXPECT_EQ (context.lines.size(), 3u);
    EXPECT_EQ (blocked.events.count ("status Error Failed to start server on: " + address.toStdString()), 3u);

    occupant.reset();
    EXPECT_TRUE (blocked.startServer (context));
    EXPECT_EQ (context.lines, (Lines { "enter Starting server listening on: " + address,
                                       "error Failed to start server on: " + address,
                                       "leave",
                                       "information Starting server listening on: " + address + " OK" }));
    EXPECT_EQ (blocked.events.get().back(), "status Success ");
}

TEST_F (ConnectionServerTest, StoppingDeletesTheConnectionsInABlock)
{
    connectClient();
    LineRecordingContext context;
    server.stopServer (context);
    EXPECT_EQ (context.lines, (Lines { "enter Stopping server with 1 connections", "leave" }));
    EXPECT_FALSE (server.getRunning());
    EXPECT_EQ (server.getNumConnections(), 0u);
    EXPECT_TRUE (clientListener.events.waitForCount ("lost", 1));
}

TEST_F (ConnectionServerTest, StoppingAStoppedServerDoesNothing)
{
    LineRecordingContext context;
    server.stopServer (context);
    EXPECT_TRUE (context.lines.empty());
}

TEST_F (ConnectionServerTest, ABadLocalIpFallsBackToAnyWithOneWarning)
{
    TestServer misconfigured (0, "203.0.113.77");
    LineRecordingContext context;
    ASSERT_TRUE (misconfigured.startServer (context));
    EXPECT_EQ (context.lines, (Lines { "warning Bad local ip: 203.0.113.77 Fallback to \"any (0.0.0.0)\" adapters.",
                                       "enter Starting server listening on: 0.0.0.0:0" }));
    misconfigured.stopServer (context);
    ASSERT_TRUE (misconfigured.startServer (context));
    EXPECT_EQ (context.lines.back(), "enter Starting server listening on: 0.0.0.0:0");
    EXPECT_EQ (context.lines.size(), 5u);
}

TEST_F (ConnectionServerTest, BlocksArriveBeforeUpdateServerTakesTheConnection)
{
    ExecutionContext context;
    ASSERT_TRUE (server.startServer (context));
    client.connect (HostIdentifier ("127.0.0.1"), NetworkAddress ("127.0.0.1", (unsigned int) server.getBoundPort()), 1000);
    client.pushMessageToSend (blockOf ("early"));
    ASSERT_TRUE (server.events.waitForCount ("block early", 1));
    EXPECT_EQ (server.getNumConnections(), 0u);
    EXPECT_EQ (server.events.count ("started"), 0u);

    server.updateServer();
    EXPECT_EQ (server.getNumConnections(), 1u);
    EXPECT_EQ (server.events.count ("started"), 1u);
}

TEST_F (ConnectionServerTest, LogsEachConnectionAndItsRemoval)
{
    DebugOutputCapture debugOutput;
    connectClient();
    const auto name = accepted().getFriendlyName().toStdString();
    EXPECT_TRUE (debugOutput.waitFor ("== NETWORK SERVER == Connected to " + name + " (127.0.0.1)\n"));

    client.disconnect();
    EXPECT_TRUE (debugOutput.waitFor ("== NETWORK SERVER == Disconnected from " + name + "\n"));
    EXPECT_TRUE (server.waitForConnections (0));
    EXPECT_NE (debugOutput.getText().find ("Remove Interprocess Connection " + name + "\n"), std::string::npos);
}

TEST_F (ConnectionServerTest, EveryAcceptedConnectionHasItsOwnIdentifier)
{
    connectClient();
    InterprocessConnection second;
    second.connect (HostIdentifier ("127.0.0.1"), NetworkAddress ("127.0.0.1", (unsigned int) server.getBoundPort()), 1000);
    ASSERT_TRUE (second.waitUntilIsConnected (20000));
    ASSERT_TRUE (server.waitForConnections (2));
    EXPECT_FALSE (server.getConnection (0)->getIdentifier().equals (server.getConnection (1)->getIdentifier()));
    EXPECT_FALSE (client.getIdentifier().equals (second.getIdentifier()));
    second.disconnect();
}
