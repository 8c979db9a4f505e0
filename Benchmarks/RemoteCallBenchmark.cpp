#include <Tov/Atomic/Atomic.h>
#include <Tov/Core/Library.h>
#include <Tov/Core/SingletonMethod.h>
#include <Tov/Message/InterprocessConnectionMessageTarget.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Message/Peer.h>
#include <Tov/Message/RemoteCall/RemoteCallQueryMessage.h>
#include <Tov/Message/RemoteCall/SingletonMethodRemoteCall.h>
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>
#include <Tov/Network/InterprocessConnectionServer.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/Service.h>
#include "FarProcess.h"
#include "MedianReporter.h"
#include "PacedPeerService.h"
#include "Percentile.h"
#include "RepeatedBenchmarks.h"
#include "RawSocketPair.h"
#include <benchmark/benchmark.h>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <map>

// Round trips of a remote call with a small argument and result (a singleton method that takes
// an Integer and answers the next one), each timed on the caller's service thread from the
// call to the result in its hands:
// - in process: the caller's service and the callee's service on threads of their own;
// - loopback: the callee in a second process (this program, started with --callee), reached
//   through a client connection and the server's accepted connection;
// against the raw socket ping-pong of the same bytes (the frame of the call's query envelop)
// in the same run. Services pace their loops as an application's do: between passes each
// waits on its thread's event, which a post to its peer signals; nothing spins.
// Prints the median and the 99th percentile of each kind of round trip, and their ratios.

namespace
{

constexpr int numRepetitions = 9;
constexpr int callsPerIteration = 100;

/** Answers value + 1 as a new Integer; the program is its singleton. */
class NextIntegerMethod : public tov::SingletonMethod
{
public:
    TOV_DECLARE_CLASS (NextIntegerMethod, SingletonMethod)
    tov::Integer value;

    Object* getSingleton() const override               { return &tov::Program::get(); }
    Object* callOnThis (Object&) const override         { return new tov::Integer (value.get() + 1); }
};

TOV_BEGIN_CLASS (NextIntegerMethod)
    TOV_VARIABLE (value)
TOV_END_CLASS()

using PacedPeerService = tov::benchmarks::PacedPeerService<>;
using tov::benchmarks::makeName;

/** Makes batches of calls on its own thread when asked, timing each one. */
class CallerService : public PacedPeerService
{
public:
    CallerService (const juce::String& name, tov::MessageTarget& callee) : PacedPeerService (name, makeName (name)), target (callee) {}

    /** Runs that many calls in the service's next pass and waits until they are done. */
    void callAndWait (int count)
    {
        const auto before = batches.get();
        requested = count;
        peer.getIncomingMessageTarget()->getThread()->notify();
        batches.waitFor (before + 1);
    }

    /** The round trips so far, in nanoseconds; read between batches only. */
    std::vector<double> roundTrips;
    std::atomic<int> numFailures { 0 };

protected:
    bool serviceUpdated() override
    {
        Service::serviceUpdated();
        // The nested passes of the calls' waits find nothing asked.
        if (const int count = requested.exchange (0))
            runCalls (count);
        return true;
    }

private:
    tov::MessageTarget& target;
    std::atomic<int> requested { 0 };
    tov::benchmarks::ArrivalCounter batches;

    void runCalls (int count)
    {
        for (int i = 0; i < count; ++i)
        {
            auto* method = new NextIntegerMethod();
            method->value.set (i, false);
            tov::SingletonMethodRemoteCall call (method);
            const auto start = std::chrono::steady_clock::now();
            auto* result = call.callPerform (peer, target, 5000, nullptr);
            roundTrips.push_back ((double) std::chrono::duration_cast<std::chrono::nanoseconds> (std::chrono::steady_clock::now() - start).count());
            if (result == nullptr || static_cast<tov::Integer*> (result)->get() != i + 1)
                ++numFailures;
            if (result != nullptr)
                result->deleteThis();
        }
        batches.add();
    }
};

/** The far process: a callee service and a server, until it is killed. */
int runCallee()
{
    PacedPeerService callee ("callee", makeName ("callee"));
    callee.start();
    return tov::benchmarks::serveUntilKilled();
}

/** The in-process pair, and a caller that reaches the far process through a connection. */
struct Setup
{
    PacedPeerService callee { "callee", makeName ("callee") };
    CallerService nearCaller { "caller", *callee.peer.getIncomingMessageTarget() };
    tov::ProgramConnectionListener toProgram;
    tov::InterprocessConnection client;
    std::unique_ptr<CallerService> farCaller;

    bool start (int port)
    {
        callee.start();
        nearCaller.start();
        if (port <= 0)
            return false;
        client.setListener (&toProgram);
        client.connect (tov::HostIdentifier ("127.0.0.1"), tov::NetworkAddress ("127.0.0.1", (unsigned int) port), 1000);
        if (! client.waitUntilIsConnected (20000))
            return false;
        tov::String far;
        far.set ("callee", false);
        farCaller = std::make_unique<CallerService> ("loopbackCaller", tov::InterprocessConnectionMessageTarget::getOrCreateThrough (client, far));
        farCaller->start();
        return true;
    }

    ~Setup()
    {
        farCaller.reset();
        client.disconnect();
        client.setListener (nullptr);
    }

    /** The bytes of a call's query envelop on the wire, frame header included. */
    std::string queryFrame()
    {
        auto* method = new NextIntegerMethod();
        method->value.set (7, false);
        auto* query = new tov::RemoteCallQueryMessage (new tov::SingletonMethodRemoteCall (method), new tov::PositiveInteger (12345));
        auto* envelop = nearCaller.peer.getIncomingMessageTarget()->createEnvelopAsSender (query, nullptr);
        tov::ObjectOwnedPointer receiver;
        receiver.set (makeName ("callee"), false);
        juce::MemoryBlock block;
        envelop->saveToMemoryBlock (receiver, block);
        envelop->deleteThis();
        return tov::benchmarks::frameOf (block, tov::InterprocessConnection::envelopMagicNumber);
    }

};

Setup* setup = nullptr;
std::vector<double> rawRoundTrips;

void remoteCallInProcess (benchmark::State& state)
{
    for (auto _ : state)
        setup->nearCaller.callAndWait (callsPerIteration);
    state.SetItemsProcessed ((int64_t) state.iterations() * callsPerIteration);
}

void remoteCallLoopback (benchmark::State& state)
{
    for (auto _ : state)
        setup->farCaller->callAndWait (callsPerIteration);
    state.SetItemsProcessed ((int64_t) state.iterations() * callsPerIteration);
}

void rawSocketRoundTrip (benchmark::State& state)
{
    tov::benchmarks::RawSocketPair pair (setup->queryFrame(), tov::InterprocessConnection::envelopMagicNumber, true);
    for (auto _ : state)
        for (int i = 0; i < callsPerIteration; ++i)
        {
            const auto start = std::chrono::steady_clock::now();
            pair.sendFrame();
            pair.readEcho();
            rawRoundTrips.push_back ((double) std::chrono::duration_cast<std::chrono::nanoseconds> (std::chrono::steady_clock::now() - start).count());
        }
    state.SetItemsProcessed ((int64_t) state.iterations() * callsPerIteration);
}

//==============================================================================
using tov::benchmarks::percentile;

void printRow (const char* title, const std::vector<double>& samples, const std::vector<double>& raw)
{
    const double median = percentile (samples, 0.5), p99 = percentile (samples, 0.99);
    const double rawMedian = percentile (raw, 0.5), rawP99 = percentile (raw, 0.99);
    std::printf ("%-34s %8zu calls   median %8.1f us  p99 %8.1f us   raw socket median %6.1f us  p99 %6.1f us   ratio median %5.2f  p99 %5.2f\n",
                 title, samples.size(), median / 1000.0, p99 / 1000.0, rawMedian / 1000.0, rawP99 / 1000.0,
                 rawMedian > 0 ? median / rawMedian : 0.0, rawP99 > 0 ? p99 / rawP99 : 0.0);
    std::fflush (stdout);
}

/** The calls and their rows; 1 when the far process could not be reached. */
int runCaller (int farPort)
{
    Setup connected;
    if (! connected.start (farPort))
    {
        std::printf ("Could not start the far process or connect to it\n");
        return 1;
    }
    setup = &connected;
    for (auto* registered : tov::benchmarks::registerEachRepeated ({ { "RemoteCallInProcess", remoteCallInProcess },
                                                                     { "RemoteCallLoopback", remoteCallLoopback },
                                                                     { "RawSocketRoundTrip", rawSocketRoundTrip } },
                                                                   numRepetitions, benchmark::kMicrosecond, 0.3))
        registered->UseRealTime();
    std::printf ("\n");
    tov::benchmarks::runWithMedianReporter ([&connected] (const tov::benchmarks::MedianReporter&)
    {
        std::printf ("\n");
        printRow ("Remote call, two services", connected.nearCaller.roundTrips, rawRoundTrips);
        printRow ("Remote call, two processes", connected.farCaller->roundTrips, rawRoundTrips);
        std::printf ("Failed calls: %d\n", connected.nearCaller.numFailures.load() + connected.farCaller->numFailures.load());
    });
    setup = nullptr;
    return 0;
}

} // namespace

int main (int argc, char** argv)
{
    return tov::benchmarks::runWithFarProcess (argc, argv, "RemoteCallBenchmark", tov::benchmarks::addClasses<NextIntegerMethod>,
                                               "--callee", runCallee, runCaller);
}
