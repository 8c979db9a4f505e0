#include "SocketConnectionServer.h"
#include "../Standard/ExceptionFilter.h"
#include <poll.h>
#include <pthread.h>

namespace tov
{

class SocketConnectionServer::ListenerThread : public juce::Thread
{
public:
    explicit ListenerThread (SocketConnectionServer& s) : juce::Thread ("Interprocess Connection Server"), owner (s) {}
    void run() override                     { owner.run(); }

private:
    SocketConnectionServer& owner;
};

SocketConnectionServer::SocketConnectionServer()
    : thread (std::make_unique<ListenerThread> (*this))
{
}

SocketConnectionServer::~SocketConnectionServer()
{
    stop();
}

bool SocketConnectionServer::beginWaitingForSocket (int port, const juce::String& bindAddress)
{
    stop();
    listener = TcpSocket::listen (bindAddress == "0.0.0.0" ? juce::String() : bindAddress, port);
    if (listener == nullptr)
        return false;
    thread->startThread();
    return true;
}

void SocketConnectionServer::stop()
{
    thread->signalThreadShouldExit();
    wakeUp.signal();
    thread->stopThread (-1);
    wakeUp.clear();
    listener.reset();
}

int SocketConnectionServer::getBoundPort() const
{
    return listener != nullptr ? listener->getBoundPort() : -1;
}

void SocketConnectionServer::run()
{
    pthread_setcancelstate (PTHREAD_CANCEL_DISABLE, nullptr);
    const ExceptionFilter::ThreadScope crashScope;
    while (! thread->threadShouldExit())
    {
        pollfd descriptors[2] = { { listener->getHandle(), POLLIN, 0 }, { wakeUp.getHandle(), POLLIN, 0 } };
        if (poll (descriptors, 2, -1) > 0 && (descriptors[0].revents & POLLIN) != 0)
            acceptWaitingConnections();
    }
}

void SocketConnectionServer::acceptWaitingConnections()
{
    while (auto socket = listener->accept())
    {
        if (thread->threadShouldExit())
            return;
        if (auto* connection = createConnectionObject())
            connection->initialiseWithSocket (std::move (socket));
    }
}

} // namespace tov
