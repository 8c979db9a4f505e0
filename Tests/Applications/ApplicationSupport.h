#pragma once

// What the test applications share: a service with one peer driven by the application's main
// loop, and a server that hands what it receives to the program.
#include <Tov/Atomic/Atomic.h>
#include <Tov/Message/Peer.h>
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/ProgramConnectionServer.h>
#include <Tov/Standard/RegisteredService.h>
#include <functional>

namespace tov::applications
{

inline String* makeName (const juce::String& name)
{
    auto* identifier = new String();
    identifier->set (name, false);
    return identifier;
}

/** A service whose one peer has the service's name as identifier. It registers with the program
    on the thread that starts it, as an application's service does. */
class PeerEndService : public RegisteredService
{
public:
    explicit PeerEndService (const juce::String& name) : RegisteredService (name), peer (makeName (name)) {}

    void getPeers (std::vector<Peer*>& result) override     { result.push_back (&peer); }

    Peer peer;
};

/** Listens on 127.0.0.1 and a port; each block it receives goes to the program, then to afterBlock. */
class ForwardingServer : public ProgramConnectionServer
{
public:
    ForwardingServer (int port, std::function<void()> callback)
        : ProgramConnectionServer (HostIdentifier::localhost, port), afterBlock (std::move (callback)) {}

protected:
    void processReceivedMessage (InterprocessConnection& connection, const juce::MemoryBlock& block, bool lost) override
    {
        ProgramConnectionServer::processReceivedMessage (connection, block, lost);
        afterBlock();
    }

private:
    std::function<void()> afterBlock;
};

} // namespace tov::applications
