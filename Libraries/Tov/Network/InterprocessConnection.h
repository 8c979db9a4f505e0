#pragma once

#include "HostIdentifier.h"
#include "InterprocessConnectionIdentifier.h"
#include "InterprocessConnectionListener.h"
#include "SocketConnection.h"
#include <deque>

namespace tov
{

/** A connection to another process that any thread can send through and that keeps itself up.

    Blocks pushed from any thread wait in a queue that only the connection's thread empties
    into the socket, in push order: no service ever blocks on a socket. A client (made by
    connect) has a thread of its own, "Interprocess Connection to " + its name, that connects,
    and connects again whenever the connection is lost, until disconnect; blocks pushed while
    it is away wait for the next connection. A connection accepted by a server never reconnects.

    Each connection has an identifier of its bound and remote addresses, filled when it
    connects, by which envelops find their way back to it; the table of all connections answers
    getByIdentifier. Blocks and the connection's life reach the listener on the connection's thread.

    Connections of the magic number envelopMagicNumber carry envelops; another magic number
    carries an application's own blocks.
*/
class InterprocessConnection : public Object, public SocketConnection
{
public:
    TOV_DECLARE_CLASS (InterprocessConnection, Object)

    static constexpr juce::uint32 envelopMagicNumber = 0xf2b49e2c;

    /** An envelop-carrying connection, entered in the table when it connects. */
    InterprocessConnection();
    /** registerNow enters it in the table at once, as a server does for the connections it accepts. */
    InterprocessConnection (juce::uint32 magicNumber, bool registerNow);
    ~InterprocessConnection() override;

    InterprocessConnectionIdentifier identifier;
    HostIdentifier remoteHostName;
    String description;

    //==============================================================================
    /** Makes this a client of the address (the host name is tried second) and starts its thread. */
    void connect (const HostIdentifier& remoteHost, const NetworkAddress& address, int timeOutMs);
    /** Stops the client's thread and closes the connection; the identifier is cleared. */
    void disconnect();

    /** From any thread: appends a copy of the block to the queue. */
    void pushMessageToSend (const juce::MemoryBlock& block)     { pushMessageToSend (juce::MemoryBlock (block)); }
    /** From any thread: appends the block to the queue. */
    void pushMessageToSend (juce::MemoryBlock&& block);
    void discardMessagesToSend();
    /** True once the queue is empty (its last blocks may still be on their way); false when
        disconnected or after ms milliseconds. */
    bool waitUntilAllMessagesAreSent (int ms);
    /** True once connected; false after ms milliseconds. */
    bool waitUntilIsConnected (int ms);

    /** Between connectionMade and connectionLost. */
    bool isConnected() const noexcept                   { return connected; }
    /** A client, which reconnects by itself. */
    bool isActiveConnection() const noexcept            { return connectionThread.load() != nullptr; }
    /** The identifier, for the connection's own thread and for threads that have seen it
        connected; any other thread takes a copy with copyIdentifierTo. */
    const InterprocessConnectionIdentifier& getIdentifier() const noexcept  { return identifier; }
    /** A copy of the identifier, taken under the table's lock, since the connection's thread
        rewrites it at each connection. */
    void copyIdentifierTo (InterprocessConnectionIdentifier& result) const;
    const HostIdentifier& getRemoteHostName() const noexcept                { return remoteHostName; }
    const juce::String& getDescription() const noexcept                     { return description.get(); }
    void setListener (InterprocessConnectionListener* newListener) noexcept { listener = newListener; }

    /** The connection of that identifier, or null; the identifier must be valid. */
    static InterprocessConnection* getByIdentifier (const InterprocessConnectionIdentifier& id);

    /** The identifier with "->" on a client and "<-" on an accepted connection, the remote host
        name, and " [description]" when there is one. */
    juce::String getFriendlyName() const override;

protected:
    void connectionMade() override;
    void connectionLost() override;
    void messageReceived (const juce::MemoryBlock& block) override;
    void deliverBlocksTogether (const std::function<void()>& deliver) override;
    bool hasMessagesToWrite() const override            { return hasMessagesFlag.load() != 0; }
    bool sendMessagesToWrite() override;

private:
    class ConnectionThread;

    juce::CriticalSection messagesToSendLock;
    std::atomic<InterprocessConnectionListener*> listener { nullptr };
    std::deque<juce::MemoryBlock> messagesToSend;
    std::atomic<int> hasMessagesFlag { 0 };
    std::atomic<bool> connected { false };
    std::atomic<ConnectionThread*> connectionThread { nullptr };

    void stopConnectionThread();
    void clearAddresses();
    /** Polls the condition until it holds (true), ms have passed, or, whileConnected, the
        connection is lost (false). */
    bool pollUntil (int ms, bool whileConnected, bool (InterprocessConnection::*condition)() const) const;
    bool isQueueEmpty() const;
};

} // namespace tov
