#include <Tov/Atomic/Integer.h>
#include <Tov/Core/Library.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Message/Peer.h>
#include <Tov/Message/RemoteTargetIdentifier.h>
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>
#include <Tov/Network/InterprocessConnectionServer.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/Service.h>
#include "BenchmarkProgram.h"
#include "MedianReporter.h"
#include "PacedPeerService.h"
#include "RawSocketPair.h"
#include "RandomInterleaving.h"
#include "RepeatedBenchmarks.h"
#include <benchmark/benchmark.h>
#include <juce_events/juce_events.h>
#include <cstdio>

// Envelops through a connection over loopback TCP, each against a raw POSIX socket carrying
// frames of the same bytes in the same run (the limit of any connection):
// - one way: a service posts envelops of one small message to a peer of another service
//   through a client connection and the server's accepted connection; timed until the far
//   peer has run the last one. The raw socket sends the same frames, one send() each, to a
//   thread that reads and cuts them.
// - round trip: a ping posted to the far peer, which answers with a pong to its sender; timed
//   until the pong has run. The raw socket sends a frame and its echo thread sends it back.
// Wall-clock times per envelop or per round trip, medians of nine repetitions interleaved at random.

namespace
{

constexpr int numRepetitions = 9;
constexpr int envelopsPerRound = 1000;

using Counter = tov::benchmarks::ArrivalCounter;

Counter received, answered;

/** A small message: one integer. Counted on arrival; with answer set, a pong goes back to its
    sender. Named as an application's frequent control message, which arriving envelops do not log. */
class ControlEventMessage : public tov::Message
{
public:
    TOV_DECLARE_CLASS (ControlEventMessage, Message)
    tov::Integer value;
    tov::Boolean answer;

    void process (tov::ExecutionContext&, const Object& sender, tov::MessageTarget& incomingTarget) const override
    {
        received.add();
        if (answer.get())
            tov::Program::get().postEnvelopToMessageTarget (sender, incomingTarget.createEnvelopAsSender (new PongMessage(), nullptr), nullptr);
    }

    class PongMessage : public tov::Message
    {
    public:
        TOV_DECLARE_CLASS (PongMessage, Message)
        void process (tov::ExecutionContext&, const Object&, tov::MessageTarget&) const override  { answered.add(); }
    };
};

using PongMessage = ControlEventMessage::PongMessage;

TOV_BEGIN_CLASS (ControlEventMessage)
    TOV_VARIABLE (value)
    TOV_VARIABLE (answer)
TOV_END_CLASS()

TOV_BEGIN_CLASS (PongMessage)
TOV_END_CLASS()

tov::Integer* makeIdentifier (int64_t value)
{
    auto* identifier = static_cast<tov::Integer*> (tov::Integer::staticClass.createObject());
    identifier->set (value, false);
    return identifier;
}

/** A service on a thread of its own with one peer of that identifier. */
class PeerService : public tov::benchmarks::PacedPeerService<>
{
public:
    PeerService (const juce::String& name, int64_t identifier) : PacedPeerService (name, makeIdentifier (identifier)) {}
};

/** Two services, one peer each ("1" near, "2" far), a server and a client connected to it. */
struct Setup
{
    PeerService nearService { "Near", 1 }, farService { "Far", 2 };
    tov::ProgramConnectionServer server { tov::HostIdentifier::localhost, 0 };
    tov::ProgramConnectionListener toProgram;
    tov::InterprocessConnection client;

    Setup()
    {
        nearService.startService (false);
        farService.startService (false);
        tov::ExecutionContext context;
        server.startServer (context);
        client.setListener (&toProgram);
        client.connect (tov::HostIdentifier ("127.0.0.1"), tov::NetworkAddress ("127.0.0.1", (unsigned int) server.getBoundPort()), 1000);
        client.waitUntilIsConnected (20000);
        while (server.getNumConnections() == 0)
        {
            server.updateServer();
            juce::Thread::sleep (1);
        }
    }

    ~Setup()
    {
        client.disconnect();
        client.setListener (nullptr);
    }

    tov::RemoteTargetIdentifier farPeer()
    {
        tov::Integer far;
        far.set (2, false);
        return tov::RemoteTargetIdentifier (client.getIdentifier(), far);
    }

    tov::Envelop* ping (bool answer)
    {
        auto* message = new ControlEventMessage();
        message->value.set (7, false);
        message->answer.set (answer, false);
        return nearService.peer.getIncomingMessageTarget()->createEnvelopAsSender (message, nullptr);
    }
};

Setup* setup = nullptr;

void envelopsOneWay (benchmark::State& state)
{
    const auto target = setup->farPeer();
    auto& program = tov::Program::get();
    for (auto _ : state)
    {
        const int64_t start = received.get();
        for (int i = 0; i < envelopsPerRound; ++i)
            program.postEnvelopToMessageTarget (target, setup->ping (false), nullptr);
        received.waitFor (start + envelopsPerRound);
    }
    state.SetItemsProcessed ((int64_t) state.iterations() * envelopsPerRound);
}

void envelopRoundTrip (benchmark::State& state)
{
    const auto target = setup->farPeer();
    auto& program = tov::Program::get();
    for (auto _ : state)
    {
        const int64_t start = answered.get();
        program.postEnvelopToMessageTarget (target, setup->ping (true), nullptr);
        answered.waitFor (start + 1);
    }
    state.SetItemsProcessed ((int64_t) state.iterations());
}

/** What the two ends of the one-way path do to each envelop, on one thread and with no socket:
    make it and write its wire form (the posting thread), then read it back (the connection's
    thread) and delete it (the far service). CPU time. */
void envelopWireFormAlone (benchmark::State& state)
{
    tov::ObjectOwnedPointer receiver;
    receiver.set (makeIdentifier (2), false);
    tov::ExecutionContext context;
    for (auto _ : state)
    {
        juce::MemoryBlock block;
        auto* envelop = setup->ping (false);
        envelop->saveToMemoryBlock (receiver, block);
        envelop->deleteThis();
        tov::ObjectOwnedPointer readReceiver;
        if (auto* read = tov::Envelop::createFromMemoryBlock (context, block, readReceiver))
            read->deleteThis();
        else
            state.SkipWithError ("the envelop did not come back");
    }
    state.SetItemsProcessed ((int64_t) state.iterations());
}

//==============================================================================
/** The frame of one ping envelop, as the connection writes it. */
std::string pingFrame()
{
    auto* envelop = setup->ping (false);
    tov::ObjectOwnedPointer receiver;
    receiver.set (makeIdentifier (2), false);
    juce::MemoryBlock block;
    envelop->saveToMemoryBlock (receiver, block);
    envelop->deleteThis();
    return tov::benchmarks::frameOf (block, tov::InterprocessConnection::envelopMagicNumber);
}

/** A raw socket pair that carries ping frames. */
class RawPair : public tov::benchmarks::RawSocketPair
{
public:
    explicit RawPair (bool echo) : RawSocketPair (pingFrame(), tov::InterprocessConnection::envelopMagicNumber, echo) {}
};

void rawSocketOneWay (benchmark::State& state)
{
    RawPair pair (false);
    for (auto _ : state)
    {
        const int64_t start = pair.frames.get();
        for (int i = 0; i < envelopsPerRound; ++i)
            pair.sendFrame();
        pair.frames.waitFor (start + envelopsPerRound);
    }
    state.SetItemsProcessed ((int64_t) state.iterations() * envelopsPerRound);
}

void rawSocketRoundTrip (benchmark::State& state)
{
    RawPair pair (true);
    for (auto _ : state)
    {
        pair.sendFrame();
        pair.readEcho();
    }
    state.SetItemsProcessed ((int64_t) state.iterations());
}

void printRatio (const tov::benchmarks::MedianReporter& reporter, const char* title, const std::string& name,
                 const std::string& peer, double itemsPerIteration)
{
    const double time = reporter.getMedianRealSeconds (name) / itemsPerIteration * 1e9;
    const double peerTime = reporter.getMedianRealSeconds (peer) / itemsPerIteration * 1e9;
    if (time > 0 && peerTime > 0)
        std::printf ("%-40s %10.0f ns %10.0f/s   raw socket %8.0f ns %10.0f/s   ratio %5.2f\n",
                     title, time, 1e9 / time, peerTime, 1e9 / peerTime, time / peerTime);
    std::fflush (stdout);
}

} // namespace

int main (int argc, char** argv)
{
    if (! tov::benchmarks::initializeWithRandomInterleaving (argc, argv))
        return 1;

    juce::ScopedJuceInitialiser_GUI juceInitialiser;
    tov::benchmarks::BenchmarkProgram program ("ConnectionBenchmark", tov::benchmarks::addClasses<ControlEventMessage, PongMessage>);
    if (! program.startProgram())
        return 1;
    {
        Setup connected;
        setup = &connected;
        for (auto* registered : tov::benchmarks::registerEachRepeated ({ { "EnvelopsOneWay", envelopsOneWay },
                                                                         { "RawSocketOneWay", rawSocketOneWay },
                                                                         { "EnvelopRoundTrip", envelopRoundTrip },
                                                                         { "RawSocketRoundTrip", rawSocketRoundTrip } },
                                                                       numRepetitions, benchmark::kMicrosecond, 0.3))
            registered->UseRealTime();
        tov::benchmarks::registerRepeated ("EnvelopWireFormAlone", envelopWireFormAlone, numRepetitions, benchmark::kMicrosecond, 0.3);
        std::printf ("\n");
        tov::benchmarks::runWithMedianReporter ([] (const tov::benchmarks::MedianReporter& reporter)
        {
            std::printf ("\n");
            printRatio (reporter, "Envelop of one message, one way", "EnvelopsOneWay", "RawSocketOneWay", envelopsPerRound);
            printRatio (reporter, "Round trip of an envelop and its answer", "EnvelopRoundTrip", "RawSocketRoundTrip", 1.0);
            std::printf ("Envelops run by the far peer in all: %lld\n", (long long) received.get());
        });
    }
    return program.stopProgram();
}
