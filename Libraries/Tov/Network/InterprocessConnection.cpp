#include "InterprocessConnection.h"
#include "../Standard/ExceptionFilter.h"
#include "InterprocessConnectionTable.h"
#include "../Standard/ExecutionContext.h"
#include "../Message/PeerMap.h"
#include "../Standard/Program.h"
#include <pthread.h>

namespace tov
{

TOV_BEGIN_CLASS (InterprocessConnection)
    TOV_VARIABLE (identifier)
    TOV_VARIABLE (remoteHostName)
    TOV_VARIABLE (description)
TOV_END_CLASS()

//==============================================================================
/** The client's thread: connects, waits while connected, and connects again. */
class InterprocessConnection::ConnectionThread : public juce::Thread
{
public:
    ConnectionThread (InterprocessConnection& o, int timeOut)
        : juce::Thread ("Interprocess Connection to " + o.getFriendlyName()), owner (o), timeOutMs (timeOut) {}

    int getTimeOutMs() const noexcept               { return timeOutMs; }

    void run() override
    {
        pthread_setcancelstate (PTHREAD_CANCEL_DISABLE, nullptr);
        const ExceptionFilter::ThreadScope crashScope;
        juce::String hostName, host;
        int port = 0;
        {
            const juce::ScopedLock lock (InterprocessConnectionTable::getLock());
            hostName = owner.remoteHostName.get();
            host = owner.identifier.remoteNetworkAddress.getHost();
            port = (int) owner.identifier.remoteNetworkAddress.getPort();
        }

        // The numeric or configured address first, the host name second. A socket counts as
        // connected from the moment it is open: connectionMade follows on its own thread.
        while (! threadShouldExit())
        {
            if (owner.isSocketConnected())
                wait (timeOutMs);
            else if (! owner.connectToSocket (host, port, timeOutMs) && ! threadShouldExit())
                owner.connectToSocket (hostName, port, timeOutMs);
        }
        if (owner.isSocketConnected())
            owner.SocketConnection::disconnect (-1, Notify::yes);
    }

private:
    InterprocessConnection& owner;
    const int timeOutMs;
};

//==============================================================================
InterprocessConnection::InterprocessConnection()
    : InterprocessConnection (envelopMagicNumber, false)
{
}

InterprocessConnection::InterprocessConnection (juce::uint32 magicNumber, bool registerNow)
    : SocketConnection (magicNumber)
{
    if (registerNow)
        InterprocessConnectionTable::enter (*this);
}

InterprocessConnection::~InterprocessConnection()
{
    InterprocessConnectionTable::remove (*this);
    if (connected)
    {
        if (! waitUntilAllMessagesAreSent (1000))
            juce::Logger::outputDebugString ("Warning: not all messages were sent when deleting the ClientConnection");
    }
    else
        discardMessagesToSend();
    disconnect();
}

//==============================================================================
void InterprocessConnection::connect (const HostIdentifier& remoteHost, const NetworkAddress& address, int timeOutMs)
{
    InterprocessConnectionTable::enter (*this);
    disconnect();
    {
        const juce::ScopedLock lock (InterprocessConnectionTable::getLock());
        remoteHostName.set (remoteHost.get(), false);
        identifier.localNetworkAddress.set ({}, 0, false);
        identifier.remoteNetworkAddress.set (address.getHost(), address.getPort(), false);
    }
    auto* thread = new ConnectionThread (*this, timeOutMs);
    connectionThread = thread;
    thread->startThread();
}

void InterprocessConnection::disconnect()
{
    stopConnectionThread();
    SocketConnection::disconnect (-1, Notify::yes);
    clearAddresses();
}

void InterprocessConnection::stopConnectionThread()
{
    auto* thread = connectionThread.load();
    if (thread == nullptr)
        return;
    const bool stopped = ! thread->isThreadRunning() || thread->stopThread (thread->getTimeOutMs() * 2);
    if (! stopped)
        ExecutionContext::get().error ("Connection " + getFriendlyName().quoted() + " thread killed by force");
    connectionThread = nullptr;
    // A thread that did not stop cannot be cancelled safely: it is left to end by itself.
    if (stopped)
        delete thread;
}

void InterprocessConnection::clearAddresses()
{
    const juce::ScopedLock lock (InterprocessConnectionTable::getLock());
    identifier.localNetworkAddress.set ({}, 0, false);
    identifier.remoteNetworkAddress.set ({}, 1, false);
    remoteHostName.set ({}, false);
}

//==============================================================================
void InterprocessConnection::connectionMade()
{
    if (auto* socket = getSocket())
    {
        juce::String localIp, remoteIp;
        int localPort = 0, remotePort = 0;
        socket->getLocalEndpoint (localIp, localPort);
        socket->getRemoteEndpoint (remoteIp, remotePort);

        const juce::ScopedLock lock (InterprocessConnectionTable::getLock());
        remoteHostName.set (socket->getHostName(), false);
        identifier.localNetworkAddress.set (localIp, (unsigned int) localPort, false);
        identifier.remoteNetworkAddress.set (remoteHostName.get(), (unsigned int) remotePort, false);
    }
    connected = true;
    if (auto* l = listener.load())
        l->connectionMade (*this);
}

void InterprocessConnection::connectionLost()
{
    connected = false;
    if (auto* l = listener.load())
        l->connectionLost (*this);
}

void InterprocessConnection::messageReceived (const juce::MemoryBlock& block)
{
    if (auto* l = listener.load())
        l->messagesReceived (*this, block);
}

// The envelops of one wake-up's reads wait until all are rebuilt, then go to their services
// together.
void InterprocessConnection::deliverBlocksTogether (const std::function<void()>& deliver)
{
    PeerMap::ReceivedEnvelopBatch batch;
    deliver();
}

//==============================================================================
void InterprocessConnection::pushMessageToSend (juce::MemoryBlock&& block)
{
    {
        const juce::ScopedLock lock (messagesToSendLock);
        messagesToSend.push_back (std::move (block));
        hasMessagesFlag = 1;
    }
    wakeUpConnectionThread();
}

void InterprocessConnection::discardMessagesToSend()
{
    const juce::ScopedLock lock (messagesToSendLock);
    messagesToSend.clear();
    hasMessagesFlag = 0;
}

// Blocks of one swap that were not sent are lost: the socket is broken, and the connection
// reports it next.
bool InterprocessConnection::sendMessagesToWrite()
{
    if (isActiveConnection() && ! connected)
        return true;

    std::deque<juce::MemoryBlock> blocks;
    {
        const juce::ScopedLock lock (messagesToSendLock);
        blocks.swap (messagesToSend);
        hasMessagesFlag = 0;
    }
    for (auto& block : blocks)
        if (! sendMessage (block))
            return false;
    return true;
}

bool InterprocessConnection::isQueueEmpty() const
{
    return hasMessagesFlag.load() == 0;
}

bool InterprocessConnection::pollUntil (int ms, bool whileConnected, bool (InterprocessConnection::*condition)() const) const
{
    const auto start = juce::Time::getMillisecondCounter();
    while (! (this->*condition)())
    {
        if ((whileConnected && ! connected) || (int) (juce::Time::getMillisecondCounter() - start) >= ms)
            return false;
        Program::yieldCurrentThreadAccordingToPowerSaveMode (false);
    }
    return true;
}

bool InterprocessConnection::waitUntilAllMessagesAreSent (int ms)
{
    return pollUntil (ms, true, &InterprocessConnection::isQueueEmpty);
}

bool InterprocessConnection::waitUntilIsConnected (int ms)
{
    return pollUntil (ms, false, &InterprocessConnection::isConnected);
}

//==============================================================================
InterprocessConnection* InterprocessConnection::getByIdentifier (const InterprocessConnectionIdentifier& id)
{
    if (! id.isValid())
        return nullptr;
    return InterprocessConnectionTable::find (id);
}

void InterprocessConnection::copyIdentifierTo (InterprocessConnectionIdentifier& result) const
{
    const juce::ScopedLock lock (InterprocessConnectionTable::getLock());
    identifier.copyTo (result);
}

juce::String InterprocessConnection::getFriendlyName() const
{
    const juce::ScopedLock lock (InterprocessConnectionTable::getLock());
    auto name = identifier.toString (isActiveConnection() ? "->" : "<-", remoteHostName.get());
    if (description.isNotEmpty())
        name << " [" << description.get() << "]";
    return name;
}

} // namespace tov
