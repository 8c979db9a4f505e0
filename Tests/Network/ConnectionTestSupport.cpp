#include "ConnectionTestSupport.h"
#include "Support/Waiting.h"
#include <Tov/Standard/Program.h>
#include <Tov/Standard/ExecutionContextView.h>

namespace tov::test
{

juce::MemoryBlock blockOf (const std::string& text)
{
    return juce::MemoryBlock (text.data(), text.size());
}

std::string textOf (const juce::MemoryBlock& block)
{
    return std::string (static_cast<const char*> (block.getData()), block.getSize());
}

//==============================================================================
void EventRecord::add (const std::string& event)
{
    {
        const std::lock_guard<std::mutex> lock (mutex);
        events.push_back (event);
    }
    changed.notify_all();
}

std::vector<std::string> EventRecord::get() const
{
    const std::lock_guard<std::mutex> lock (mutex);
    return events;
}

size_t EventRecord::count (const std::string& event) const
{
    const std::lock_guard<std::mutex> lock (mutex);
    return (size_t) std::count (events.begin(), events.end(), event);
}

bool EventRecord::waitFor (const std::function<bool (const std::vector<std::string>&)>& condition, int timeOutMilliseconds)
{
    std::unique_lock<std::mutex> lock (mutex);
    return changed.wait_for (lock, std::chrono::milliseconds (timeOutMilliseconds), [&] { return condition (events); });
}

bool EventRecord::waitForCount (const std::string& event, size_t number, int timeOutMilliseconds)
{
    return waitFor ([&] (const std::vector<std::string>& all)
    {
        return (size_t) std::count (all.begin(), all.end(), event) >= number;
    }, timeOutMilliseconds);
}

//==============================================================================
void RecordingConnectionListener::messagesReceived (InterprocessConnection& connection, const juce::MemoryBlock& block)
{
    if (beforeBlock)
        beforeBlock();
    if (forwardToProgram)
        Program::get().processReceivedNetworkMessage (connection, block);
    events.add ("block " + textOf (block));
}

//==============================================================================
TestServer::~TestServer()
{
    ExecutionContext context;
    stopServer (context);
}

bool TestServer::waitForConnections (size_t count)
{
    return waitUntil ([&] { updateServer(); return getNumConnections() == count; });
}

void TestServer::setServerStatus (const SuccessStatus& status)
{
    events.add (("status " + status.getStateDescription() + " " + status.getMessage()).toStdString());
}

void TestServer::processReceivedMessage (InterprocessConnection& connection, const juce::MemoryBlock& block, bool connectionAlreadyLost)
{
    if (forwardToProgram)
        Program::get().processReceivedNetworkMessage (connection, block);
    events.add ((connectionAlreadyLost ? "block after loss " : "block ") + textOf (block));
}

//==============================================================================
namespace
{
    struct LineView : public ExecutionContextView
    {
        explicit LineView (std::vector<juce::String>& l) : lines (l) {}
        void enteredCallback (const juce::String& name) override                   { lines.push_back ("enter " + name); }
        void leavedCallback() override                                             { lines.push_back ("leave"); }
        void warningCallback (const juce::String& message, const Object*) override { lines.push_back ("warning " + message); }
        void errorCallback (const juce::String& message, const Object*) override   { lines.push_back ("error " + message); }
        void informationCallback (const juce::String& message, const Object*) override  { lines.push_back ("information " + message); }
        std::vector<juce::String>& lines;
    };
}

bool connectClientForwardingToProgram (InterprocessConnection& client, RecordingConnectionListener& listener, int port)
{
    listener.forwardToProgram = true;
    client.setListener (&listener);
    client.connect (HostIdentifier ("127.0.0.1"), NetworkAddress ("127.0.0.1", (unsigned int) port), 1000);
    return client.waitUntilIsConnected (20000);
}

bool connectThroughServerForwardingToProgram (TestServer& server, InterprocessConnection& client, RecordingConnectionListener& listener)
{
    server.forwardToProgram = true;
    ExecutionContext context;
    return server.startServer (context)
        && connectClientForwardingToProgram (client, listener, server.getBoundPort())
        && server.waitForConnections (1);
}

void addLineRecordingView (ExecutionContext& context, std::vector<juce::String>& lines)
{
    context.addView (new LineView (lines));
}

LineRecordingContext::LineRecordingContext()
{
    addLineRecordingView (*this, lines);
}

//==============================================================================
void ConnectionTest::connectClient (int timeOutMs)
{
    ExecutionContext context;
    ASSERT_TRUE (server.startServer (context));
    client.setListener (&clientListener);
    client.connect (HostIdentifier ("localhost"), NetworkAddress ("127.0.0.1", (unsigned int) server.getBoundPort()), timeOutMs);
    ASSERT_TRUE (client.waitUntilIsConnected (20000));
    ASSERT_TRUE (server.waitForConnections (1));
}

} // namespace tov::test
