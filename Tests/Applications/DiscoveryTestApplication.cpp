// A server that announces itself and looks for the others, for the tests of discovery across
// processes.
//   DiscoveryTestApplication IP PORT LISTENPORT NAME SERVICEPORT
// broadcasts, every 50 ms from IP:PORT to the broadcast address of IP's adapter at LISTENPORT,
// a ServerAnnouncement of NAME and SERVICEPORT, and listens at LISTENPORT, shared with others.
// Says "sent " and its announcement (class, identifier, State text), "ready", then once for
// each other sender that it hears, "found ADDRESS ALIVETIME_MS OBJECT" with the object rebuilt
// from the packet, told the same way; warnings and errors as "warning: " and "error: " lines. Runs until
// its standard input ends, then says "bye".
#include "ApplicationSupport.h"
#include "Network/ServerAnnouncement.h"
#include <Tov/Core/Library.h>
#include <Tov/Core/State.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Network/LastNetworkServerFootprint.h>
#include <Tov/Network/NetworkBroadcaster.h>
#include <Tov/Network/NetworkDiscoverer.h>
#include <Tov/Standard/ExecutionContext.h>
#include <iostream>
#include <set>
#include <poll.h>
#include <unistd.h>

using namespace tov;

namespace
{
using applications::say;

struct SayingView : public ExecutionContextView
{
    void warningCallback (const juce::String& message, const Object*) override  { say ("warning: " + message); }
    void errorCallback (const juce::String& message, const Object*) override    { say ("error: " + message); }
};

/** The class, the identifier in hexadecimal and the State text of what the object saves. */
juce::String describe (const Object& object)
{
    return object.getClassName() + " " + juce::String::toHexString ((juce::int64) object.getUniqueIdentifier().getInt64()) + " "
         + StateObjectExporter::make (object, exportTransientVariables, true)->toString();
}

/** Waits at most the time for standard input; false once it has ended. */
bool inputIsOpen (int timeOutMilliseconds)
{
    pollfd input { 0, POLLIN, 0 };
    if (::poll (&input, 1, timeOutMilliseconds) <= 0)
        return true;
    char bytes[256];
    return ::read (0, bytes, sizeof (bytes)) > 0;
}

struct Server
{
    NetworkBroadcaster broadcaster;
    NetworkDiscoverer discoverer;
    LastNetworkServerFootprint footprint;
    std::set<juce::String> found;

    void poll (ExecutionContext& context, const Object& announcement, const juce::String& ownAddress)
    {
        broadcaster.updateBroadcasting (announcement);
        while (discoverer.getNetworkServerFootPrint (context, footprint))
        {
            const juce::String sender = footprint.getAddress().toString();
            // Broadcasts come back to their own machine too.
            if (sender != ownAddress && found.insert (sender).second)
                say ("found " + sender + " " + juce::String (footprint.getAliveTime().toMilliseconds()) + " "
                     + describe (*footprint.getInformation()));
        }
    }
};
} // namespace

int main (int argc, char* argv[])
{
    if (argc != 6)
    {
        std::cerr << "usage: DiscoveryTestApplication IP PORT LISTENPORT NAME SERVICEPORT" << std::endl;
        return 2;
    }
    const juce::String ip (argv[1]);
    const int port = juce::String (argv[2]).getIntValue();
    const int listenPort = juce::String (argv[3]).getIntValue();

    auto* library = new NamedLibrary ("DiscoveryTestApplication", {});
    library->addClass<test::ServerAnnouncement>();
    initializeTov()->addLibrary (library);
    ExecutionContext context;
    context.addView (new SayingView());
    const int servicePort = juce::String (argv[5]).getIntValue();
    auto* announcement = test::ServerAnnouncement::create (argv[4], servicePort, (uint64_t) servicePort);
    say ("sent " + describe (*announcement));

    int exitCode = 1;
    {
        Server server;
        if (server.broadcaster.startBroadcasting (context, ip, (size_t) port, (size_t) listenPort, 0.05)
            && server.discoverer.startDiscovering (context, LocalNetworkAddress (ip, (unsigned int) listenPort), true))
        {
            say ("ready");
            const juce::String ownAddress = ip + ":" + juce::String (port);
            while (inputIsOpen (10))
                server.poll (context, *announcement, ownAddress);
            exitCode = 0;
        }
    }
    announcement->deleteThis();
    deinitializeTov();
    say ("bye");
    return exitCode;
}
