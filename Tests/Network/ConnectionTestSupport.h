#pragma once

#include <Tov/Network/InterprocessConnectionServer.h>
#include <Tov/Standard/ExecutionContext.h>
#include <gtest/gtest.h>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

// Servers, listeners and contexts that write down what happens on connections' threads, for
// tests that wait for it on their own.
namespace tov::test
{

juce::MemoryBlock blockOf (const std::string& text);
std::string textOf (const juce::MemoryBlock& block);

/** Things that happened on other threads, kept in order, with a wait for a condition on them. */
class EventRecord
{
public:
    void add (const std::string& event);
    std::vector<std::string> get() const;
    size_t count (const std::string& event) const;
    /** True once the events satisfy the condition; false after the time-out. */
    bool waitFor (const std::function<bool (const std::vector<std::string>&)>& condition, int timeOutMilliseconds = 20000);
    bool waitForCount (const std::string& event, size_t count, int timeOutMilliseconds = 20000);

private:
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> events;
};

/** Writes down "made", "lost" and "block <text>"; can hand the blocks to the program too. */
class RecordingConnectionListener : public InterprocessConnectionListener
{
public:
    void connectionMade (InterprocessConnection&) override              { events.add ("made"); }
    void connectionLost (InterprocessConnection&) override              { events.add ("lost"); }
    void messagesReceived (InterprocessConnection& connection, const juce::MemoryBlock& block) override;

    EventRecord events;
    /** Blocks go to Program::processReceivedNetworkMessage as well. */
    bool forwardToProgram = false;
    /** Called on the connection's thread before a block is written down. */
    std::function<void()> beforeBlock;
};

/** A server on 127.0.0.1 (or the ip given) and a port, 0 letting the system choose. Writes
    down "block <text>" or "block after loss <text>", "started", and "status <state> <message>". */
class TestServer : public InterprocessConnectionServer
{
public:
    explicit TestServer (int port = 0, const juce::String& ip = "127.0.0.1") : port (port), ip (ip) {}
    ~TestServer() override;

    EventRecord events;
    int port;
    juce::String ip;
    /** Blocks go to Program::processReceivedNetworkMessage as well. */
    bool forwardToProgram = false;

    /** Runs updateServer until it holds that many connections. */
    bool waitForConnections (size_t count);

protected:
    void setServerStatus (const SuccessStatus& status) override;
    juce::String getServerLocalIp() const override         { return ip; }
    int getServerLocalPort() const override                 { return port; }
    InterprocessConnection* createConnection() override     { return new InterprocessConnection(); }
    void processReceivedMessage (InterprocessConnection& connection, const juce::MemoryBlock& block, bool connectionAlreadyLost) override;
    void clientStarted (InterprocessConnection&) override   { events.add ("started"); }
};

/** Connects the client to 127.0.0.1:port through the listener, which hands the blocks that
    arrive to the program; false unless it is connected within 20 s. */
bool connectClientForwardingToProgram (InterprocessConnection& client, RecordingConnectionListener& listener, int port);

/** Starts the server, handing what it receives to the program, connects the client to it in the
    same way and takes the accepted connection in; false when any of it fails. */
bool connectThroughServerForwardingToProgram (TestServer& server, InterprocessConnection& client, RecordingConnectionListener& listener);

/** Writes each event of the context as a line into lines: "enter <name>", "leave",
    "error <message>", "warning <message>", "information <message>". */
void addLineRecordingView (ExecutionContext& context, std::vector<juce::String>& lines);

/** A context that writes each event as a line: "enter <name>", "leave", "error <message>"... */
class LineRecordingContext : public ExecutionContext
{
public:
    LineRecordingContext();
    std::vector<juce::String> lines;
};

/** A connected pair on loopback: a server and a client of it, both made. */
class ConnectionTest : public ::testing::Test
{
protected:
    TestServer server;
    InterprocessConnection client;
    RecordingConnectionListener clientListener;

    /** Starts the server, connects the client and takes in the accepted connection. */
    void connectClient (int timeOutMs = 1000);
    InterprocessConnection& accepted()                      { return *server.getConnection (0); }

    void TearDown() override
    {
        client.disconnect();
        client.setListener (nullptr);
    }
};

} // namespace tov::test
