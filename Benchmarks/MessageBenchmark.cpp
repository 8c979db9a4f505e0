#include <Tov/Atomic/Integer.h>
#include <Tov/Core/Library.h>
#include <Tov/Core/State.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Message/MessageTarget.h>
#include <Tov/Message/Peer.h>
#include "BenchmarkLibrary.h"
#include "BenchmarkProgram.h"
#include "BenchmarkService.h"
#include "MedianReporter.h"
#include "RandomInterleaving.h"
#include "RepeatedBenchmarks.h"
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <mutex>
#include <vector>

// Messages between services of one process, each against a peer in the same run:
// - envelops of one small message posted through the program to a peer and taken by its
//   incoming pass, 100 per round (make, post, take, run, delete), against a plain std::mutex
//   and std::vector queue of the same messages, made, run and deleted alike and drained by the
//   same swap: the limit of any queue that moves pointers to messages;
// - the wire form of an envelop of ten messages, written to a block and read back into a new
//   envelop, against the binary State alone of the same envelop written and read back.
// Times are CPU times per envelop, medians of nine repetitions interleaved at random.

namespace
{

constexpr int numRepetitions = 9;
constexpr int envelopsPerRound = 100;

/** A small message: one integer, added to the receiving peer's sum. */
class SumMessage : public tov::Message
{
public:
    TOV_DECLARE_CLASS (SumMessage, Message)

    SumMessage() = default;
    explicit SumMessage (int64_t amount)             { value.set (amount, false); }

    void process (tov::ExecutionContext&, const Object&, tov::MessageTarget& incomingTarget) const override;

    tov::Integer value;
};

class SummingPeer : public tov::Peer
{
public:
    TOV_DECLARE_CLASS (SummingPeer, Peer)
    using Peer::Peer;
    int64_t sum = 0;
};

TOV_BEGIN_CLASS (SumMessage)
    TOV_VARIABLE (value)
TOV_END_CLASS()

TOV_BEGIN_CLASS (SummingPeer)
TOV_END_CLASS()

void SumMessage::process (tov::ExecutionContext&, const Object&, tov::MessageTarget& incomingTarget) const
{
    static_cast<SummingPeer*> (incomingTarget.getParent())->sum += value.get();
}

/** The peer of the envelop queue: a queue of moved pointers to messages made, run and deleted
    as the envelop's message is, with no envelop, sender or routing around them. */
class PlainQueue
{
public:
    void post (tov::Message* message)
    {
        const std::lock_guard<std::mutex> lock (mutex);
        messages.push_back (message);
    }

    void drain (tov::ExecutionContext& context, const tov::Object& sender, tov::MessageTarget& target)
    {
        std::vector<tov::Message*> taken;
        taken.reserve (envelopsPerRound);
        {
            const std::lock_guard<std::mutex> lock (mutex);
            messages.swap (taken);
        }
        for (auto* message : taken)
        {
            message->process (context, sender, target);
            message->deleteThis();
        }
    }

private:
    std::mutex mutex;
    std::vector<tov::Message*> messages;
};

tov::Integer* makeIdentifier (int64_t value)
{
    auto* identifier = static_cast<tov::Integer*> (tov::Integer::staticClass.createObject());
    identifier->set (value, false);
    return identifier;
}

tov::benchmarks::BenchmarkService* theService = nullptr;

void postEnvelopToPeer (benchmark::State& state)
{
    auto* receiver = new SummingPeer (makeIdentifier (2));
    tov::ObjectOwnedPointer target;
    target.set (makeIdentifier (2), false);
    auto& program = tov::Program::get();
    for (auto _ : state)
    {
        for (int i = 0; i < envelopsPerRound; ++i)
            program.postEnvelopToMessageTarget (*target, new tov::Envelop (makeIdentifier (1), new SumMessage (1)), nullptr);
        receiver->processIncomingMessages (theService->getExecutionContext());
    }
    if (receiver->sum != (int64_t) state.iterations() * envelopsPerRound)
        state.SkipWithError ("an envelop went missing");
    state.SetItemsProcessed ((int64_t) state.iterations() * envelopsPerRound);
    receiver->deleteThis();
}

void plainMutexVectorQueue (benchmark::State& state)
{
    auto* receiver = new SummingPeer();
    tov::Integer sender;
    PlainQueue queue;
    for (auto _ : state)
    {
        for (int i = 0; i < envelopsPerRound; ++i)
            queue.post (new SumMessage (1));
        queue.drain (theService->getExecutionContext(), sender, *receiver->getIncomingMessageTarget());
    }
    if (receiver->sum != (int64_t) state.iterations() * envelopsPerRound)
        state.SkipWithError ("a message went missing");
    state.SetItemsProcessed ((int64_t) state.iterations() * envelopsPerRound);
    receiver->deleteThis();
}

tov::Envelop* makeTenMessageEnvelop()
{
    auto* envelop = new tov::Envelop (makeIdentifier (1), nullptr);
    for (int i = 0; i < 10; ++i)
        envelop->addMessage (new SumMessage (i));
    return envelop;
}

void envelopWireForm (benchmark::State& state)
{
    auto* envelop = makeTenMessageEnvelop();
    tov::ObjectOwnedPointer receiver;
    receiver.set (makeIdentifier (2), false);
    auto& context = theService->getExecutionContext();
    for (auto _ : state)
    {
        juce::MemoryBlock block;
        envelop->saveToMemoryBlock (receiver, block);
        tov::ObjectOwnedPointer readReceiver;
        auto* read = tov::Envelop::createFromMemoryBlock (context, block, readReceiver);
        if (read == nullptr || read->getNumMessages() != 10)
            state.SkipWithError ("the envelop did not come back");
        else
            read->deleteThis();
    }
    state.SetItemsProcessed ((int64_t) state.iterations());
    envelop->deleteThis();
}

void stateBinaryAlone (benchmark::State& state)
{
    auto* envelop = makeTenMessageEnvelop();
    tov::ObjectOwnedPointer receiver;
    receiver.set (makeIdentifier (2), false);
    tov::State root;
    root.addVariable ("envelop", envelop->makeState (false, true));
    root.addVariable ("receiver", receiver.makeState (false, true));
    for (auto _ : state)
    {
        juce::MemoryBlock block;
        {
            juce::MemoryOutputStream output (block, true);
            output.preallocate (1024);
            root.toBinary (output);
        }
        juce::MemoryInputStream input (block, false);
        tov::State read;
        juce::String error;
        if (! read.loadFromBinary (input, error))
            state.SkipWithError ("the state did not come back");
        benchmark::DoNotOptimize (read.getNumVariables());
    }
    state.SetItemsProcessed ((int64_t) state.iterations());
    envelop->deleteThis();
}

void printRatio (const tov::benchmarks::MedianReporter& reporter, const char* title, const std::string& name,
                 const char* peerTitle, const std::string& peer, double itemsPerIteration)
{
    const double time = reporter.getMedianSeconds (name) / itemsPerIteration * 1e9;
    const double peerTime = reporter.getMedianSeconds (peer) / itemsPerIteration * 1e9;
    if (time > 0 && peerTime > 0)
        std::printf ("%s: %.1f ns (%.0f per second); %s: %.1f ns (%.0f per second); ratio %.2f\n",
                     title, time, 1e9 / time, peerTitle, peerTime, 1e9 / peerTime, time / peerTime);
    std::fflush (stdout);
}

} // namespace

int main (int argc, char** argv)
{
    if (! tov::benchmarks::initializeWithRandomInterleaving (argc, argv))
        return 1;

    // The wire form finds the message class by name.
    tov::initializeTov()->addLibrary (tov::benchmarks::createLibrary<SumMessage, SummingPeer> ("MessageBenchmark"));
    {
        tov::benchmarks::BenchmarkProgram program ("MessageBenchmark");
        tov::benchmarks::BenchmarkService service;
        theService = &service;
        tov::benchmarks::registerEachRepeated ({ { "PostEnvelopToPeer", postEnvelopToPeer }, { "PlainMutexVectorQueue", plainMutexVectorQueue },
                                                 { "EnvelopWireForm", envelopWireForm }, { "StateBinaryAlone", stateBinaryAlone } },
                                               numRepetitions, benchmark::kNanosecond, 0.2);
        std::printf ("\n");
        tov::benchmarks::runWithMedianReporter ([] (const tov::benchmarks::MedianReporter& reporter)
        {
            std::printf ("\n");
            printRatio (reporter, "Envelop of one message to a peer", "PostEnvelopToPeer",
                        "plain mutex and vector queue", "PlainMutexVectorQueue", envelopsPerRound);
            printRatio (reporter, "Wire form of a ten-message envelop, written and read", "EnvelopWireForm",
                        "its binary State alone", "StateBinaryAlone", 1.0);
        });
    }
    tov::deinitializeTov();
    return 0;
}
