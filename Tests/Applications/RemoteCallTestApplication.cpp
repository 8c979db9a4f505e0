// The callee of remote calls in a process of its own, for the test that kills it in the
// middle of a call.
//   RemoteCallTestApplication PORT   listens on 127.0.0.1:PORT with a peer "callee" and says
//                                    "listening"; it answers the first call it receives, and
//                                    says "stalling" when the second arrives, which it leaves
//                                    unanswered, as every later one
// It runs until its standard input ends or it is killed. Its program is version 2.5.7 of
// branch "remote".
#include "ApplicationSupport.h"
#include <juce_events/juce_events.h>
#include <atomic>
#include <thread>
#include <unistd.h>

using namespace tov;

namespace
{
std::atomic<bool> inputOpen { true };
std::atomic<int> numReceived { 0 };
/** Signalled when a block from the network has been queued for the service's pass. */
juce::WaitableEvent blockArrived;

class RemoteCallTestProgram : public Program
{
public:
    RemoteCallTestProgram() : Program ("RemoteCallTestApplication", "remote", 2, 5, 7, "test") {}
};

void run (int port)
{
    applications::PeerEndService service ("callee");
    service.startService (true);
    applications::ForwardingServer server (port, []
    {
        if (++numReceived == 2)
            applications::say ("stalling");
        blockArrived.signal();
    });
    if (! server.startServer (service.getExecutionContext()))
    {
        applications::say ("could not listen");
        return;
    }
    applications::say ("listening");
    while (inputOpen)
    {
        server.updateServer();
        // Only the first call is answered: the later ones wait in the peer's queue.
        if (numReceived < 2)
            service.callServiceUpdate (true);
        blockArrived.wait (20);
    }
    server.stopServer (service.getExecutionContext());
    service.stopService (2000);
}
} // namespace

int main (int argc, char* argv[])
{
    if (argc != 2)
        return 2;
    const int port = juce::String (argv[1]).getIntValue();
    juce::ScopedJuceInitialiser_GUI juceInitialiser;
    RemoteCallTestProgram program;
    if (! program.startProgram())
        return 1;

    std::thread inputWatcher ([] { char buffer[64]; while (::read (0, buffer, sizeof (buffer)) > 0) {} inputOpen = false; });
    run (port);
    inputWatcher.join();
    return program.stopProgram();
}
