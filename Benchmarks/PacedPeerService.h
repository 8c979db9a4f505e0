#pragma once

#include <Tov/Atomic/String.h>
#include <Tov/Message/Peer.h>
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>
#include <Tov/Network/InterprocessConnectionServer.h>
#include "BenchmarkService.h"
#include <thread>

namespace tov::benchmarks
{

/** A peer identifier that is a name. */
inline String* makeName (const juce::String& name)
{
    auto* identifier = new String();
    identifier->set (name, false);
    return identifier;
}

/** A service on a thread of its own with one peer, registered with the running program. Between
    passes it waits on its thread's event, which a post to its peer signals, or 10 ms: as an
    application's service does, it never spins. The peer's class may declare object spaces. */
template <class PeerClass = Peer>
class PacedPeerService : public RegisteredService
{
public:
    /** Takes ownership of the identifier. */
    PacedPeerService (const juce::String& name, Object* identifier) : RegisteredService (name), peer (identifier) {}
    ~PacedPeerService() override                            { stopService (5000); }

    void getPeers (std::vector<Peer*>& result) override     { result.push_back (&peer); }

    /** Starts the thread and waits until its peer's queue knows it, so that posts wake it. */
    void start()
    {
        startService (false);
        while (peer.getIncomingMessageTarget()->getThread() == nullptr)
            std::this_thread::yield();
    }

    PeerClass peer;

protected:
    void servicePostUpdated() override
    {
        Program::letCurrentThreadWaitAccordingToPowerSaveMode (10);
    }
};

/** A server on a port of 127.0.0.1 that the system chooses; what it receives goes to the program. */
class ForwardingServer : public InterprocessConnectionServer
{
public:
    ~ForwardingServer() override                                { ExecutionContext context; stopServer (context); }

protected:
    void setServerStatus (const SuccessStatus&) override        {}
    juce::String getServerLocalIp() const override              { return HostIdentifier::localhost; }
    int getServerLocalPort() const override                     { return 0; }
    InterprocessConnection* createConnection() override         { return new InterprocessConnection(); }
    void processReceivedMessage (InterprocessConnection& connection, const juce::MemoryBlock& block, bool) override
    {
        Program::get().processReceivedNetworkMessage (connection, block);
    }
};

/** Hands what a client connection receives to the program. */
class ForwardingListener : public InterprocessConnectionListener
{
public:
    void messagesReceived (InterprocessConnection& connection, const juce::MemoryBlock& block) override
    {
        Program::get().processReceivedNetworkMessage (connection, block);
    }
};

} // namespace tov::benchmarks
