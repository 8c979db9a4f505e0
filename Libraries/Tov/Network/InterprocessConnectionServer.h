#pragma once

#include "InterprocessConnection.h"
#include "SocketConnectionServer.h"
#include "../Atomic/Boolean.h"
#include "../Container/OwnedVector.h"
#include "../Standard/SuccessStatus.h"
#include <set>
#include <utility>
#include <vector>

namespace tov
{

/** Accepts connections and hands them to its owner's thread.

    A connection is accepted on the listener's thread and starts receiving at once: its blocks
    go to processReceivedMessage on the connection's thread, with the server's lock held, so
    that function must be quick (the usual one only deserialises and queues). Only the owner's
    updateServer puts a made connection into connections, and removes, deleting them, the
    connections that were lost.

    A server that fails to start reports it once, stays quiet while it keeps failing, and says
    "OK" at its next success. The application's subclass says where to listen, makes the
    connections, and takes what they receive.
*/
class InterprocessConnectionServer : public Object,
                                     public SocketConnectionServer,
                                     public InterprocessConnectionListener
{
public:
    TOV_DECLARE_CLASS (InterprocessConnectionServer, Object)

    InterprocessConnectionServer() = default;
    /** Stops the server, reporting to a context of its own. */
    ~InterprocessConnectionServer() override;

    Boolean running;
    OwnedVector<InterprocessConnection> connections;

    /** False when running already or when the port cannot be listened on. */
    bool startServer (ExecutionContext& context);
    void stopServer (ExecutionContext& context);
    /** On the owner's thread: takes in the connections made, removes the lost ones. */
    void updateServer();

    const OwnedVector<InterprocessConnection>& getConnections() const noexcept  { return connections; }
    InterprocessConnection* getConnection (size_t index) const                  { return connections.get (index); }
    size_t getNumConnections() const noexcept                                    { return connections.size(); }
    bool getRunning() const noexcept                                             { return running.get(); }

protected:
    virtual void setServerStatus (const SuccessStatus& status) = 0;
    /** The configured local address, as text. */
    virtual juce::String getServerLocalIp() const = 0;
    virtual int getServerLocalPort() const = 0;
    /** A new connection of the application's class. */
    virtual InterprocessConnection* createConnection() = 0;
    /** On the connection's thread, with the server's lock held. */
    virtual void processReceivedMessage (InterprocessConnection& connection, const juce::MemoryBlock& block,
                                         bool connectionAlreadyLost) = 0;
    /** On the owner's thread, once the connection is in connections. */
    virtual void clientStarted (InterprocessConnection&)     {}

    /** The ip to listen on: the configured one, or any with a warning when it is not usable.
        The warning reaches the context only when it differs from the last one. */
    juce::String getLocalIpOrAny (ExecutionContext& context);

    // From the listener and the connections' threads.
    SocketConnection* createConnectionObject() override;
    void connectionMade (InterprocessConnection& connection) override;
    void connectionLost (InterprocessConnection& connection) override;
    void messagesReceived (InterprocessConnection& connection, const juce::MemoryBlock& block) override;

private:
    juce::CriticalSection connectionsLock;
    std::vector<std::pair<InterprocessConnection*, bool>> pendingConnections;
    std::set<InterprocessConnection*> lostConnections;
    SuccessStatus status;
    bool failureAlreadyReported = false;

    bool takeMadeConnections();
    bool removeLostConnections();
};

} // namespace tov
