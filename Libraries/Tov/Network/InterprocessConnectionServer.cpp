#include "InterprocessConnectionServer.h"
#include "InterprocessConnectionTable.h"
#include "../Standard/ExecutionContext.h"
#include "../Standard/ToSuccessStatusExecutionContext.h"

namespace tov
{

TOV_BEGIN_CLASS (InterprocessConnectionServer)
    TOV_VARIABLE (running)
    TOV_VARIABLE (connections)
TOV_END_CLASS()

namespace
{
    void log (const juce::String& line)
    {
        juce::Logger::outputDebugString (line);
    }
}

InterprocessConnectionServer::~InterprocessConnectionServer()
{
    ExecutionContext context;
    stopServer (context);
}

//==============================================================================
bool InterprocessConnectionServer::startServer (ExecutionContext& context)
{
    if (running.get())
        return false;

    const juce::String ip = getLocalIpOrAny (context);
    const int port = getServerLocalPort();
    stopServer (context);

    const juce::String address = ip + ":" + juce::String (port);
    // The block stays open on success, as it always has.
    if (! failureAlreadyReported)
        context.enter ("Starting server listening on: " + address);

    if (beginWaitingForSocket (port, ip))
    {
        setServerStatus (SuccessStatus (SuccessStateEnum::success, {}));
        running.set (true, false);
        if (failureAlreadyReported)
        {
            context.information ("Starting server listening on: " + address + " OK");
            failureAlreadyReported = false;
        }
        return true;
    }

    const juce::String text = "Failed to start server on: " + address;
    if (! failureAlreadyReported)
    {
        context.error (text);
        context.leave();
        failureAlreadyReported = true;
    }
    setServerStatus (SuccessStatus (SuccessStateEnum::error, text));
    running.set (false, false);
    return false;
}

void InterprocessConnectionServer::stopServer (ExecutionContext& context)
{
    if (! running.get())
        return;

    failureAlreadyReported = false;
    context.enter ("Stopping server with " + juce::String ((int) connections.size()) + " connections");
    stop();
    connections.clear();
    std::vector<std::pair<InterprocessConnection*, bool>> released;
    {
        const juce::ScopedLock lock (connectionsLock);
        released.swap (pendingConnections);
        lostConnections.clear();
    }
    // Released outside the lock: a connection deleted here waits for its thread, which may be
    // waiting for the lock to deliver a block.
    for (auto& pending : released)
        pending.first->decrementReferenceCounter();
    running.set (false, false);
    context.leave();
}

juce::String InterprocessConnectionServer::getLocalIpOrAny (ExecutionContext& context)
{
    SuccessStatus newStatus;
    ToSuccessStatusExecutionContext collector (newStatus);
    const juce::String ip = HostIdentifier::getLocalIpOrAnyWithWarning (collector, getServerLocalIp());
    if (! newStatus.equals (status))
    {
        status = newStatus;
        if (! status.isSuccess())
            context.status (status);
    }
    return ip;
}

//==============================================================================
SocketConnection* InterprocessConnectionServer::createConnectionObject()
{
    auto* connection = createConnection();
    if (connection == nullptr)
        return nullptr;
    connection->incrementReferenceCounter();
    connection->setListener (this);
    // Answers must find their way back to it through the table.
    InterprocessConnectionTable::enter (*connection);
    const juce::ScopedLock lock (connectionsLock);
    pendingConnections.emplace_back (connection, false);
    return connection;
}

void InterprocessConnectionServer::connectionMade (InterprocessConnection& connection)
{
    log ("== NETWORK SERVER == Connected to " + connection.getFriendlyName() + " (" + connection.getConnectedHostName() + ")");
    const juce::ScopedLock lock (connectionsLock);
    for (auto& pending : pendingConnections)
    {
        if (pending.first == &connection)
        {
            pending.second = true;
            return;
        }
    }
    log ("== NETWORK SERVER == Could not find connection that just was made");
}

void InterprocessConnectionServer::connectionLost (InterprocessConnection& connection)
{
    log ("== NETWORK SERVER == Disconnected from " + connection.getFriendlyName());
    const juce::ScopedLock lock (connectionsLock);
    lostConnections.insert (&connection);
}

void InterprocessConnectionServer::messagesReceived (InterprocessConnection& connection, const juce::MemoryBlock& block)
{
    const juce::ScopedLock lock (connectionsLock);
    const bool lost = lostConnections.count (&connection) > 0;
    if (lost)
        log (" == NETWORK SERVER == WARNING: messagesReceived() after connectionLost()!!");
    processReceivedMessage (connection, block, lost);
}

//==============================================================================
void InterprocessConnectionServer::updateServer()
{
    bool changedConnections = false;
    {
        const juce::ScopedLock lock (connectionsLock);
        changedConnections = takeMadeConnections();
        changedConnections = removeLostConnections() || changedConnections;
    }
    if (changedConnections)
        connections.changed();
}

bool InterprocessConnectionServer::takeMadeConnections()
{
    bool taken = false;
    for (auto pending = pendingConnections.begin(); pending != pendingConnections.end();)
    {
        if (! pending->second)
        {
            ++pending;
            continue;
        }
        auto* connection = pending->first;
        connections.append (connection, false);
        connection->decrementReferenceCounter();
        clientStarted (*connection);
        pending = pendingConnections.erase (pending);
        taken = true;
    }
    return taken;
}

bool InterprocessConnectionServer::removeLostConnections()
{
    if (lostConnections.empty())
        return false;
    for (auto* connection : lostConnections)
    {
        log ("Remove Interprocess Connection " + connection->getFriendlyName());
        connections.remove (connection, false);
    }
    lostConnections.clear();
    return true;
}

} // namespace tov
