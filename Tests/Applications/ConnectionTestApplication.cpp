// Two processes that talk through a connection, for the tests of connections across processes.
//   ConnectionTestApplication server PORT   listens on 127.0.0.1:PORT; says "listening", then
//                                           "server received ping N" for each ping, which it answers
//   ConnectionTestApplication client PORT   connects to 127.0.0.1:PORT and sends a numbered ping every
//                                           20 ms; says "client connected C", "client disconnected C",
//                                           "client received 3 pongs on connection C", and
//                                           "client pong out of order" should a pong overtake another
// Both run until their standard input ends. Debug output (the server's log lines) goes to
// standard error.
#include "ApplicationSupport.h"
#include <Tov/Atomic/Atomic.h>
#include <Tov/Core/Library.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Message/Peer.h>
#include <Tov/Message/RemoteTargetIdentifier.h>
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/Service.h>
#include <Tov/TovLibrary.h>
#include <juce_events/juce_events.h>
#include <atomic>
#include <thread>
#include <unistd.h>

using namespace tov;

namespace
{
std::atomic<bool> inputOpen { true };
std::atomic<int> numConnections { 0 };
/** Signalled when an envelop from the network has been queued for the service's pass. */
juce::WaitableEvent envelopArrived;

using applications::say;

/** Answers with a pong of its number. */
class PingMessage : public Message
{
public:
    TOV_DECLARE_CLASS (PingMessage, Message)
    Integer number;
    void process (ExecutionContext&, const Object& sender, MessageTarget& incomingTarget) const override;
};

class PongMessage : public Message
{
public:
    TOV_DECLARE_CLASS (PongMessage, Message)
    Integer number;
    void process (ExecutionContext&, const Object&, MessageTarget&) const override;
};

TOV_BEGIN_CLASS (PingMessage)
    TOV_VARIABLE (number)
TOV_END_CLASS()

TOV_BEGIN_CLASS (PongMessage)
    TOV_VARIABLE (number)
TOV_END_CLASS()

void PingMessage::process (ExecutionContext&, const Object& sender, MessageTarget& incomingTarget) const
{
    say ("server received ping " + juce::String (number.get()));
    auto* pong = new PongMessage();
    pong->number.set (number.get(), false);
    Program::get().postEnvelopToMessageTarget (sender, incomingTarget.createEnvelopAsSender (pong, nullptr), nullptr);
}

void PongMessage::process (ExecutionContext&, const Object&, MessageTarget&) const
{
    static int64_t lastNumber = 0, connection = 0, numOnConnection = 0;
    if (number.get() <= lastNumber)
        say ("client pong out of order");
    lastNumber = number.get();
    if (connection != numConnections)
    {
        connection = numConnections;
        numOnConnection = 0;
    }
    if (++numOnConnection == 3)
        say ("client received 3 pongs on connection " + juce::String (connection));
}

//==============================================================================
using EndService = applications::PeerEndService;

class ClientListener : public ProgramConnectionListener
{
public:
    void connectionMade (InterprocessConnection&) override  { say ("client connected " + juce::String (++numConnections)); }
    void connectionLost (InterprocessConnection&) override  { say ("client disconnected " + juce::String (numConnections)); }
    void messagesReceived (InterprocessConnection& connection, const juce::MemoryBlock& block) override
    {
        ProgramConnectionListener::messagesReceived (connection, block);
        envelopArrived.signal();
    }
};

class ConnectionTestProgram : public Program
{
public:
    ConnectionTestProgram() : Program ("ConnectionTestApplication", "main", 1, 0, 0, "test") {}

protected:
    void addLibraries (Library& root) override
    {
        auto* library = new NamedLibrary ("ConnectionTest", {});
        library->addClass<PingMessage>();
        library->addClass<PongMessage>();
        root.addLibrary (library);
    }
};

void runServer (int port)
{
    EndService service ("server");
    service.startService (true);
    applications::ForwardingServer server (port, [] { envelopArrived.signal(); });
    if (! server.startServer (service.getExecutionContext()))
        return say ("could not listen");
    say ("listening");
    while (inputOpen)
    {
        server.updateServer();
        service.callServiceUpdate (true);
        envelopArrived.wait (20);
    }
    server.stopServer (service.getExecutionContext());
    service.stopService (2000);
}

void runClient (int port)
{
    EndService service ("client");
    service.startService (true);
    ClientListener listener;
    InterprocessConnection connection;
    connection.setListener (&listener);
    connection.connect (HostIdentifier (HostIdentifier::localhost), NetworkAddress (HostIdentifier::localhost, (unsigned int) port), 100);

    String server;
    server.set ("server", false);
    int64_t nextPing = 1;
    for (auto lastPing = juce::Time::getMillisecondCounter(); inputOpen;)
    {
        service.callServiceUpdate (true);
        if (juce::Time::getMillisecondCounter() - lastPing >= 20)
        {
            lastPing = juce::Time::getMillisecondCounter();
            auto* ping = new PingMessage();
            ping->number.set (nextPing++, false);
            InterprocessConnectionIdentifier current;
            connection.copyIdentifierTo (current);
            RemoteTargetIdentifier target (current, server);
            Program::get().postEnvelopToMessageTarget (target, service.peer.getIncomingMessageTarget()->createEnvelopAsSender (ping, nullptr), nullptr);
        }
        // Until a pong arrives or the next ping is due.
        envelopArrived.wait (20);
    }
    connection.disconnect();
    service.stopService (2000);
}
} // namespace

int main (int argc, char* argv[])
{
    if (argc != 3)
        return 2;
    const juce::String mode (argv[1]);
    const int port = juce::String (argv[2]).getIntValue();
    juce::ScopedJuceInitialiser_GUI juceInitialiser;
    ConnectionTestProgram program;
    if (! program.startProgram())
        return 1;

    std::thread inputWatcher ([] { char buffer[64]; while (::read (0, buffer, sizeof (buffer)) > 0) {} inputOpen = false; });
    if (mode == "server")
        runServer (port);
    else
        runClient (port);
    inputWatcher.join();
    return program.stopProgram();
}
