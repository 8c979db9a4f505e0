#include <Tov/Atomic/AsyncTrigger.h>
#include <Tov/Core/Library.h>
#include "BenchmarkProgram.h"
#include "BenchmarkService.h"
#include "MedianReporter.h"
#include "RandomInterleaving.h"
#include "RepeatedBenchmarks.h"
#include <benchmark/benchmark.h>
#include <cstdio>

// The fixed cost of a service's main loop, each against a peer in the same run:
// - one empty pass of a service (callServiceUpdate with its post update: no peers, no
//   triggers, no profiler) against a hand-written loop step that does what the empty pass
//   cannot avoid, a virtual update and a read of the high-resolution clock;
// - one async trigger from trig() to its callback (the flush of the next pass calling
//   changed(), which reaches a view) against the same changed() called at once.
// Times are CPU times per pass or per trigger, medians of nine repetitions interleaved at random.

namespace
{

constexpr int numRepetitions = 9;

/** The peer of the empty pass: a step of a loop with one virtual update that reads the clock. */
class PlainLoopStep
{
public:
    virtual ~PlainLoopStep() = default;
    virtual bool update()
    {
        lastSeconds = juce::Time::getMillisecondCounterHiRes() / 1000.0;
        return true;
    }
    double lastSeconds = 0.0;
};

class CountingView : public tov::View
{
public:
    void changedCallback (tov::Object*, tov::Object*) override  { ++count; }
    int64_t count = 0;
};

/** The service of main's thread, which runs the benchmarks; made once the program runs. */
tov::benchmarks::BenchmarkService* theService = nullptr;

tov::benchmarks::BenchmarkService& getService()
{
    return *theService;
}

void emptyServicePass (benchmark::State& state)
{
    auto& service = getService();
    for (auto _ : state)
        if (! service.callServiceUpdate (true))
            state.SkipWithError ("the pass asked to stop");
}

void plainLoopStep (benchmark::State& state)
{
    std::unique_ptr<PlainLoopStep> step = std::make_unique<PlainLoopStep>();
    for (auto _ : state)
    {
        benchmark::DoNotOptimize (step->update());
        benchmark::ClobberMemory();
    }
}

void asyncTriggerFromTrigToCallback (benchmark::State& state)
{
    auto& service = getService();
    tov::AsyncTrigger trigger;
    CountingView view;
    view.attachObject (&trigger);
    for (auto _ : state)
    {
        trigger.trig();
        service.callServiceUpdate (true);
    }
    if (view.count != (int64_t) state.iterations())
        state.SkipWithError ("a callback went missing");
}

void directChanged (benchmark::State& state)
{
    tov::AsyncTrigger trigger;
    CountingView view;
    view.attachObject (&trigger);
    for (auto _ : state)
        trigger.changed();
    if (view.count != (int64_t) state.iterations())
        state.SkipWithError ("a callback went missing");
}

/** A contestant's median over its peer's. */
void printRatio (const tov::benchmarks::MedianReporter& reporter, const char* title, const std::string& name,
                 const char* peerTitle, const std::string& peer)
{
    const double time = reporter.getMedianSeconds (name) * 1e9, peerTime = reporter.getMedianSeconds (peer) * 1e9;
    if (time > 0 && peerTime > 0)
        std::printf ("%s: %.1f ns; %s: %.1f ns; ratio %.2f\n", title, time, peerTitle, peerTime, time / peerTime);
    std::fflush (stdout);
}

} // namespace

int main (int argc, char** argv)
{
    if (! tov::benchmarks::initializeWithRandomInterleaving (argc, argv))
        return 1;

    tov::initializeTov();
    {
        // Services need a running program to find them by thread.
        tov::benchmarks::BenchmarkProgram program ("ServiceBenchmark");
        tov::benchmarks::BenchmarkService service;
        theService = &service;
        tov::benchmarks::registerEachRepeated ({ { "EmptyServicePass", emptyServicePass }, { "PlainLoopStep", plainLoopStep },
                                                 { "AsyncTriggerFromTrigToCallback", asyncTriggerFromTrigToCallback },
                                                 { "DirectChanged", directChanged } },
                                               numRepetitions, benchmark::kNanosecond, 0.2);
        std::printf ("\n");
        tov::benchmarks::runWithMedianReporter ([] (const tov::benchmarks::MedianReporter& reporter)
        {
            std::printf ("\n");
            printRatio (reporter, "Empty service pass", "EmptyServicePass", "plain loop step", "PlainLoopStep");
            printRatio (reporter, "Async trigger, trig to callback", "AsyncTriggerFromTrigToCallback", "direct changed()", "DirectChanged");
        });
    }
    tov::deinitializeTov();
    return 0;
}
