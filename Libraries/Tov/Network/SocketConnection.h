#pragma once

#include "FrameReader.h"
#include "TcpSocket.h"
#include "WakeUpEvent.h"
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tov
{

class SocketConnectionServer;

/** A two-way connection to another process over a TCP socket, carrying blocks of bytes in
    frames (see FrameReader) that begin with the connection's magic number.

    Each connection has one thread that does all its socket work: it reads and cuts frames,
    and between reads asks hasMessagesToWrite and calls sendMessagesToWrite, so that a subclass
    can keep a queue that any thread fills and only this thread writes. connectionMade,
    connectionLost and messageReceived come on that thread, connectionLost once for each
    connectionMade. A peer that sends a wrong magic number or announces a block above the
    limit is cut off; a frame cut short by the end of the stream is dropped.

    The interface follows juce::InterprocessConnection, whose reader allocates whatever size a
    peer announces and delivers cut frames padded with zeros, and which has no hooks for a
    writing thread. A subclass must call disconnect() in its destructor, before its callbacks
    are gone.
*/
class SocketConnection
{
public:
    enum class Notify { no, yes };

    explicit SocketConnection (juce::uint32 magicNumber);
    virtual ~SocketConnection();

    /** Disconnects, then connects to the host and port and starts the connection's thread;
        false when no connection was made within the time-out. */
    bool connectToSocket (const juce::String& hostName, int port, int timeOutMs);

    /** Stops the connection's thread, waiting at most timeOutMs (-1: as long as it takes), and
        closes the socket; with Notify::yes, connectionLost follows if connectionMade came.
        From the connection's own thread it only asks the thread to end, which then reports
        the loss itself. */
    void disconnect (int timeOutMs = -1, Notify notify = Notify::yes);

    /** A socket is open and its thread is serving it. */
    bool isSocketConnected() const;
    /** The host given to connect, or the peer's ip on an accepted connection; empty when closed. */
    juce::String getConnectedHostName() const;
    /** The socket; only the connection's thread may rely on it staying. */
    TcpSocket* getSocket() const noexcept               { return socket.get(); }
    juce::uint32 getMagicNumber() const noexcept        { return magicNumber; }

    /** Frames the block and writes it. Writes never block: what the socket does not take at
        once waits in the connection's buffer and leaves in order. On the connection's thread
        the blocks gather until the thread next looks at its queue, so that a batch leaves in
        few writes. False when the connection is closed or broken. */
    bool sendMessage (const juce::MemoryBlock& block);

    /** The calling thread is this connection's thread. */
    bool isConnectionThread() const noexcept;

protected:
    virtual void connectionMade() = 0;
    virtual void connectionLost() = 0;
    virtual void messageReceived (const juce::MemoryBlock& block) = 0;
    /** Asked by the connection's thread between reads, without lock. */
    virtual bool hasMessagesToWrite() const         { return false; }
    /** Called on the connection's thread when hasMessagesToWrite; false ends the connection. */
    virtual bool sendMessagesToWrite()              { return true; }

    /** Runs deliver, which hands the blocks of one wake-up's reads to messageReceived; a
        subclass may wrap it to handle those blocks as one batch. */
    virtual void deliverBlocksTogether (const std::function<void()>& deliver)  { deliver(); }
    /** Makes the connection's thread ask hasMessagesToWrite now rather than after its next read. */
    void wakeUpConnectionThread() noexcept          { wakeUp.signal(); }

private:
    friend class SocketConnectionServer;
    class ConnectionThread;

    const juce::uint32 magicNumber;
    std::unique_ptr<ConnectionThread> thread;
    std::atomic<bool> threadIsRunning { false };
    std::atomic<bool> callbackConnectionState { false };
    std::atomic<bool> endedFromInside { false };
    WakeUpEvent wakeUp;

    mutable juce::CriticalSection socketLock;
    std::unique_ptr<TcpSocket> socket;

    // Written blocks not yet taken by the socket, from outgoingStart on.
    juce::CriticalSection outgoingLock;
    int writeHandle = -1;
    std::vector<char> outgoing;
    size_t outgoingStart = 0;

    std::optional<FrameReader> reader;
    std::vector<char> readBuffer;

    void initialiseWithSocket (std::unique_ptr<TcpSocket> newSocket);
    void run();
    bool serve();
    bool writeWhatWaits();
    bool readWhatArrived();
    bool hasOutgoingBytes();
    bool flushWithoutLock();
    void notifyConnectionLost();
    void closeSocket();

    JUCE_DECLARE_NON_COPYABLE (SocketConnection)
};

} // namespace tov
