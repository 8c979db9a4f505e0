#pragma once

#include <Tov/Atomic/String.h>
#include <Tov/Message/Peer.h>
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>
#include <Tov/Standard/ProgramConnectionServer.h>
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

} // namespace tov::benchmarks
