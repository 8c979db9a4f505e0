#include "SocketConnection.h"
#include "../Standard/ExceptionFilter.h"
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <cerrno>

namespace tov
{

namespace
{
    constexpr size_t readBufferSize = 64 * 1024;
    /** Written bytes that may wait in the buffer before the queue is asked for more: beyond
        it, blocks stay in the subclass's queue until the peer reads. */
    constexpr size_t outgoingLimit = 256 * 1024;
    /** Bytes that the connection's thread gathers from its queue before it writes them. */
    constexpr size_t batchSize = 64 * 1024;
    /** How long the thread sleeps in poll before it looks whether it should exit. */
    constexpr int pollIntervalMs = 100;
}

class SocketConnection::ConnectionThread : public juce::Thread
{
public:
    explicit ConnectionThread (SocketConnection& c) : juce::Thread ("Interprocess Connection I/O"), owner (c) {}
    void run() override                     { owner.run(); }

private:
    SocketConnection& owner;
};

SocketConnection::SocketConnection (juce::uint32 magic)
    : magicNumber (magic), thread (std::make_unique<ConnectionThread> (*this))
{
}

SocketConnection::~SocketConnection()
{
    // The subclass must have disconnected: its callbacks are gone now.
    jassert (! threadIsRunning);
    disconnect (-1, Notify::no);
}

bool SocketConnection::connectToSocket (const juce::String& hostName, int port, int timeOutMs)
{
    disconnect();
    auto newSocket = TcpSocket::connect (hostName, port, timeOutMs);
    if (newSocket == nullptr)
        return false;
    initialiseWithSocket (std::move (newSocket));
    return true;
}

void SocketConnection::initialiseWithSocket (std::unique_ptr<TcpSocket> newSocket)
{
    {
        const juce::ScopedLock lock (outgoingLock);
        writeHandle = newSocket->getHandle();
        outgoing.clear();
        outgoingStart = 0;
    }
    {
        const juce::ScopedLock lock (socketLock);
        socket = std::move (newSocket);
    }
    reader.emplace (magicNumber);
    endedFromInside = false;
    threadIsRunning = true;
    thread->startThread();
}

void SocketConnection::disconnect (int timeOutMs, Notify notify)
{
    if (isConnectionThread())
    {
        endedFromInside = true;
        thread->signalThreadShouldExit();
        return;
    }

    thread->signalThreadShouldExit();
    wakeUp.signal();
    thread->stopThread (timeOutMs);
    closeSocket();
    if (notify == Notify::yes)
        notifyConnectionLost();
    callbackConnectionState = false;
}

void SocketConnection::closeSocket()
{
    {
        const juce::ScopedLock lock (outgoingLock);
        writeHandle = -1;
        outgoing.clear();
        outgoingStart = 0;
    }
    const juce::ScopedLock lock (socketLock);
    socket.reset();
}

bool SocketConnection::isSocketConnected() const
{
    const juce::ScopedLock lock (socketLock);
    return socket != nullptr && threadIsRunning;
}

juce::String SocketConnection::getConnectedHostName() const
{
    const juce::ScopedLock lock (socketLock);
    return socket != nullptr ? socket->getHostName() : juce::String();
}

bool SocketConnection::isConnectionThread() const noexcept
{
    return juce::Thread::getCurrentThread() == thread.get();
}

//==============================================================================
bool SocketConnection::sendMessage (const juce::MemoryBlock& block)
{
    const juce::ScopedLock lock (outgoingLock);
    if (writeHandle < 0 || block.getSize() > FrameReader::defaultMaximumBlockSize)
        return false;

    const size_t start = outgoing.size();
    outgoing.resize (start + FrameReader::headerSize + block.getSize());
    FrameReader::writeHeader (magicNumber, (juce::uint32) block.getSize(), outgoing.data() + start);
    memcpy (outgoing.data() + start + FrameReader::headerSize, block.getData(), block.getSize());

    // On the connection's own thread the blocks of one batch leave together, when the batch
    // ends (see writeWhatWaits) or when they fill a socket's worth.
    if (isConnectionThread())
        return outgoing.size() - outgoingStart < batchSize || flushWithoutLock();

    if (! flushWithoutLock())
        return false;
    if (outgoingStart < outgoing.size())
        wakeUp.signal(); // the connection's thread writes the rest when the socket takes it
    return true;
}

bool SocketConnection::hasOutgoingBytes()
{
    const juce::ScopedLock lock (outgoingLock);
    return outgoingStart < outgoing.size();
}

bool SocketConnection::flushWithoutLock()
{
    while (outgoingStart < outgoing.size())
    {
        const auto sent = send (writeHandle, outgoing.data() + outgoingStart, outgoing.size() - outgoingStart,
                                MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent > 0)
            outgoingStart += (size_t) sent;
        else if (sent < 0 && errno == EINTR)
            continue;
        else
            return sent < 0 && (errno == EAGAIN || errno == EWOULDBLOCK);
    }
    outgoing.clear();
    outgoingStart = 0;
    return true;
}

//==============================================================================
void SocketConnection::run()
{
    // A thread that cannot be stopped in time is left to end by itself, never cancelled.
    pthread_setcancelstate (PTHREAD_CANCEL_DISABLE, nullptr);
    const ExceptionFilter::ThreadScope crashScope;
    readBuffer.resize (readBufferSize);

    if (! callbackConnectionState.exchange (true))
        connectionMade();

    const bool lost = ! serve() || endedFromInside;
    if (lost)
        socket->shutdown();
    threadIsRunning = false;
    if (lost)
        notifyConnectionLost();
}

bool SocketConnection::serve()
{
    const int handle = socket->getHandle();
    while (! thread->threadShouldExit())
    {
        if (! writeWhatWaits())
            return false;

        pollfd descriptors[2] = { { handle, (short) (POLLIN | (hasOutgoingBytes() ? POLLOUT : 0)), 0 },
                                  { wakeUp.getHandle(), POLLIN, 0 } };
        if (poll (descriptors, 2, pollIntervalMs) < 0 && errno != EINTR)
            return false;
        if (descriptors[1].revents != 0)
            wakeUp.clear();
        if ((descriptors[0].revents & (POLLIN | POLLHUP | POLLERR)) != 0 && ! readWhatArrived())
            return false;
        if ((descriptors[0].revents & POLLOUT) != 0)
        {
            const juce::ScopedLock lock (outgoingLock);
            if (! flushWithoutLock())
                return false;
        }
    }
    return true;
}

bool SocketConnection::writeWhatWaits()
{
    {
        const juce::ScopedLock lock (outgoingLock);
        if (outgoing.size() - outgoingStart > outgoingLimit)
            return true;
    }
    const bool sent = ! hasMessagesToWrite() || sendMessagesToWrite();
    const juce::ScopedLock lock (outgoingLock);
    return flushWithoutLock() && sent;
}

// Reads until the socket has nothing more, a bounded number of times, so that a peer that
// never stops sending cannot keep the thread from writing. What one wake-up reads is delivered
// together: while the thread rebuilds the envelops of one read the next ones arrive, and their
// service is then woken once for all of them rather than once for each.
bool SocketConnection::readWhatArrived()
{
    const FrameReader::BlockCallback deliver = [this] (const juce::MemoryBlock& block) { messageReceived (block); };
    bool open = true;
    deliverBlocksTogether ([&]
    {
        for (int attempt = 0; attempt < 16 && ! thread->threadShouldExit(); ++attempt)
        {
            const auto received = recv (socket->getHandle(), readBuffer.data(), readBuffer.size(), MSG_DONTWAIT);
            if (received > 0)
                open = reader->read (readBuffer.data(), (size_t) received, deliver) == FrameReader::Result::ok;
            else if (received < 0 && errno == EINTR)
                continue;
            else
                open = received < 0 && (errno == EAGAIN || errno == EWOULDBLOCK);
            if (! open || received <= 0)
                return;
        }
    });
    return open;
}

void SocketConnection::notifyConnectionLost()
{
    if (callbackConnectionState.exchange (false))
        connectionLost();
}

} // namespace tov
