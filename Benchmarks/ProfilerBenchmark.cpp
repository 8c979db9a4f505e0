#include <Tov/Core/Library.h>
#include <Tov/Standard/Profiler/CpuTimingsProfiler.h>
#include <Tov/Standard/Profiler/NSightProfiler.h>
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <Tov/Standard/Profiler/StdDevProfiler.h>
#include "MedianReporter.h"
#include "RandomInterleaving.h"
#include "RepeatedBenchmarks.h"
#include <benchmark/benchmark.h>
#include <cstdio>

// The cost of one ProfilerScope (its begin and its end), each against a limit in the same run:
// - with no profiler installed, against an empty function call: the scope is to cost one
//   pointer comparison, so within 1 ns of the call;
// - with each profiler, against what any timing profiler must do per scope, two reads of the
//   monotonic clock and a store of the result: at most twice that. Each profiler runs on a
//   thread it records: the rendering thread, and for StdDevProfiler also another thread,
//   whose stack is found in a map under a lock. NSightProfiler runs on the stub of NVTX that
//   the tests build, which records each call in a ring without a lock.
// Times are CPU times per scope, medians of nine repetitions interleaved at random.

namespace
{

constexpr int numRepetitions = 9;
/** CpuTimingsProfiler keeps every scope of a frame: a frame begins every so many scopes, as it would. */
constexpr int scopesPerFrame = 1024;

__attribute__ ((noinline)) void emptyFunction()
{
    asm volatile ("");
}

void emptyCall (benchmark::State& state)
{
    for (auto _ : state)
        emptyFunction();
}

void scopeWithoutProfiler (benchmark::State& state)
{
    if (tov::Profiler::get() != nullptr)
        state.SkipWithError ("a profiler is installed");
    for (auto _ : state)
        const tov::ProfilerScope scope ("Scope");
}

double durations[scopesPerFrame];

void twoClockReadsAndAStore (benchmark::State& state)
{
    int index = 0;
    for (auto _ : state)
    {
        const double start = juce::Time::getMillisecondCounterHiRes();
        const double end = juce::Time::getMillisecondCounterHiRes();
        durations[index] = end - start;
        index = (index + 1) % scopesPerFrame;
        benchmark::ClobberMemory();
    }
}

/** Installs the profiler for the run, and removes it again. */
template <class ProfilerType>
class InstalledForRun
{
public:
    explicit InstalledForRun (ProfilerType* profiler, bool onRenderingThread) : profiler (profiler)
    {
        if (onRenderingThread)
            profiler->setRenderingThreadId ((void*) juce::Thread::getCurrentThreadId());
        tov::Profiler::set (profiler);
    }
    ~InstalledForRun()      { tov::Profiler::set (nullptr); }

    ProfilerType* const profiler;
};

void scopeOfCpuTimings (benchmark::State& state)
{
    InstalledForRun<tov::CpuTimingsProfiler> installed (new tov::CpuTimingsProfiler(), true);
    int index = 0;
    for (auto _ : state)
    {
        if (++index == scopesPerFrame)
        {
            installed.profiler->beginFrame();
            index = 0;
        }
        const tov::ProfilerScope scope ("Scope");
    }
}

/** One frame has begun: its number is not a multiple of 100, so nothing is printed. */
void runStdDev (benchmark::State& state, bool onRenderingThread)
{
    InstalledForRun<tov::StdDevProfiler> installed (new tov::StdDevProfiler(), onRenderingThread);
    installed.profiler->beginFrame();
    for (auto _ : state)
        const tov::ProfilerScope scope ("Scope");
}

void scopeOfStdDevOnRenderingThread (benchmark::State& state)   { runStdDev (state, true); }
void scopeOfStdDevOnOtherThread (benchmark::State& state)       { runStdDev (state, false); }

void scopeOfNSightOnStub (benchmark::State& state)
{
    InstalledForRun<tov::NSightProfiler> installed (new tov::NSightProfiler (juce::StringArray ({ TOV_NVTX_STUB_PATH })), false);
    if (! installed.profiler->isLibraryLoaded())
        state.SkipWithError ("the NVTX stub did not load");
    for (auto _ : state)
        const tov::ProfilerScope scope ("Scope");
}

void printRow (const tov::benchmarks::MedianReporter& reporter, const char* title, const char* name, const char* limit)
{
    const double time = reporter.getMedianSeconds (name) * 1e9, limitTime = reporter.getMedianSeconds (limit) * 1e9;
    if (time > 0 && limitTime > 0)
        std::printf ("%-34s %10.2f %10.2f %10.2f %8.2f\n", title, time, limitTime, time - limitTime, time / limitTime);
}

} // namespace

int main (int argc, char** argv)
{
    if (! tov::benchmarks::initializeWithRandomInterleaving (argc, argv))
        return 1;

    tov::initializeTov();
    tov::benchmarks::registerEachRepeated ({ { "EmptyCall", emptyCall }, { "ScopeWithoutProfiler", scopeWithoutProfiler },
                                             { "TwoClockReadsAndAStore", twoClockReadsAndAStore },
                                             { "ScopeOfCpuTimings", scopeOfCpuTimings },
                                             { "ScopeOfStdDevOnRenderingThread", scopeOfStdDevOnRenderingThread },
                                             { "ScopeOfStdDevOnOtherThread", scopeOfStdDevOnOtherThread },
                                             { "ScopeOfNSightOnStub", scopeOfNSightOnStub } },
                                           numRepetitions, benchmark::kNanosecond, 0.2);
    std::printf ("\n");
    tov::benchmarks::runWithMedianReporter ([] (const tov::benchmarks::MedianReporter& reporter)
    {
        std::printf ("\n%-34s %10s %10s %10s %8s\n", "Scope (ns per scope)", "time", "limit", "excess", "ratio");
        printRow (reporter, "no profiler / empty call", "ScopeWithoutProfiler", "EmptyCall");
        printRow (reporter, "CpuTimings, rendering / clock", "ScopeOfCpuTimings", "TwoClockReadsAndAStore");
        printRow (reporter, "StdDev, rendering / clock", "ScopeOfStdDevOnRenderingThread", "TwoClockReadsAndAStore");
        printRow (reporter, "StdDev, other thread / clock", "ScopeOfStdDevOnOtherThread", "TwoClockReadsAndAStore");
        printRow (reporter, "NSight on the stub / clock", "ScopeOfNSightOnStub", "TwoClockReadsAndAStore");
        std::fflush (stdout);
    });
    tov::deinitializeTov();
    return 0;
}
