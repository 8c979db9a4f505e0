#pragma once

#include "SocketConnection.h"

namespace tov
{

/** Listens on a TCP port and gives each accepted socket to a new connection that the subclass
    makes, on a thread of its own ("Interprocess Connection Server"). The connection starts
    its own thread at once; who owns it is the subclass's business.

    The interface follows juce::InterprocessConnectionServer, which can only give sockets to
    JUCE's own connections and which stops its listener by connecting to it.
*/
class SocketConnectionServer
{
public:
    SocketConnectionServer();
    /** Stops listening. */
    virtual ~SocketConnectionServer();

    /** Stops listening, then listens on the port (0 lets the system choose) of the ip ("" for
        every adapter); false when that cannot be bound. */
    bool beginWaitingForSocket (int port, const juce::String& bindAddress = {});
    /** Closes the listener and waits for its thread. Accepted connections live on. */
    void stop();

    /** The port listened on, or -1 when not listening. */
    int getBoundPort() const;

protected:
    /** On the listener's thread: a new connection for the accepted socket, or null to refuse it. */
    virtual SocketConnection* createConnectionObject() = 0;

private:
    class ListenerThread;

    std::unique_ptr<ListenerThread> thread;
    std::unique_ptr<TcpSocket> listener;
    WakeUpEvent wakeUp;

    void run();
    void acceptWaitingConnections();

    JUCE_DECLARE_NON_COPYABLE (SocketConnectionServer)
};

} // namespace tov
