#pragma once

// What the test applications share: a line on standard output at once, a service with one peer
// driven by the application's main loop, and a server that hands what it receives to the program.
#include <Tov/Atomic/Atomic.h>
#include <Tov/Message/Peer.h>
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/ProgramConnectionServer.h>
#include <Tov/Standard/RegisteredService.h>
#include <functional>
#include <iostream>
#include <mutex>

namespace tov::applications
{

/** Writes the line to standard output and flushes it, for the test that reads it to see it at
    once; lines said on several threads at a time do not mix. Not for signal handlers: nothing
    calls it from one. */
inline void say (const juce::String& line)
{
    static std::mutex lock;
    const std::lock_guard<std::mutex> guard (lock);
    std::cout << line << std::endl;
}

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
