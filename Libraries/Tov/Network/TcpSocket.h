#pragma once

#include <juce_core/juce_core.h>
#include <memory>

namespace tov
{

/** One TCP socket, owned: a listener or a connected stream.

    The connections of this library do their own reading, writing and framing on a thread of
    their own; this class only opens, accepts and closes, and tells the two ends' addresses.
    Connected sockets are non-blocking and have Nagle's delay switched off, since blocks are
    small and want to leave at once. Every call is safe on a socket whose peer vanished:
    writes never raise SIGPIPE.
*/
class TcpSocket
{
public:
    /** Takes ownership of the descriptor; hostName is what getHostName answers. */
    TcpSocket (int handle, const juce::String& hostName);
    ~TcpSocket();

    /** A socket connected to the host (a dotted address or a name) and port, or null when no
        connection was made within the time-out. */
    static std::unique_ptr<TcpSocket> connect (const juce::String& host, int port, int timeOutMs);
    /** A socket listening on the ip ("" or "0.0.0.0" for every adapter) and port (0 lets the
        system choose), or null when it could not bind. */
    static std::unique_ptr<TcpSocket> listen (const juce::String& ip, int port);
    /** On a listener: the next waiting connection, or null when none waits. */
    std::unique_ptr<TcpSocket> accept() const;

    int getHandle() const noexcept                          { return handle; }
    /** The host given to connect, or the peer's ip on an accepted socket. */
    const juce::String& getHostName() const noexcept        { return hostName; }

    /** The ip and port this end is bound to; false when the system cannot tell. */
    bool getLocalEndpoint (juce::String& ip, int& port) const;
    /** The ip and port of the far end; false when not connected. */
    bool getRemoteEndpoint (juce::String& ip, int& port) const;
    /** The port this end is bound to, or -1. */
    int getBoundPort() const;

    /** Ends both directions at once; reads on either end then see the end of the stream. */
    void shutdown() noexcept;

private:
    int handle;
    juce::String hostName;

    JUCE_DECLARE_NON_COPYABLE (TcpSocket)
};

} // namespace tov
