#include <Tov/Core/Library.h>
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <Tov/Standard/Profiler/UnrealProfiler.h>
#include <TraceReader/TraceListener.h>
#include <TraceReader/TraceReport.h>
#include <TraceReader/TraceStreamReader.h>
#include "MedianReporter.h"
#include "RandomInterleaving.h"
#include "RepeatedBenchmarks.h"
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <future>
#include <thread>

// UnrealProfiler, the trace stream:
// - one ProfilerScope on the calling thread (its begin and its end, the name a literal) with the
//   profiler writing to a file, against what any tracing profiler must do per scope: two reads of
//   the clock and a write of 8 bytes into a buffer of the thread; the goal is at most twice that.
//   CPU time per scope, medians of nine repetitions interleaved at random.
// - sustained: 10 million scopes from 2 threads (5 million each) to a file, then to a socket on
//   loopback, read back by tov-trace's reader, which must count every one. Printed: the rate of
//   the scopes (wall time until both threads are done, and until the stream is closed), the
//   stream's bytes per scope and the writer's memory per scope just before the stream is closed
//   (its cache of important events, its blocks of buffers and its tail).
// "--scope-only" leaves the sustained runs out (to profile the scope alone).

namespace
{

constexpr int numRepetitions = 9;
constexpr int numSustainedThreads = 2;
constexpr int scopesPerThread = 5000000;

juce::File makeTemporaryFolder()
{
    auto folder = juce::File::getSpecialLocation (juce::File::tempDirectory).getNonexistentChildFile ("TraceBenchmark", {});
    folder.createDirectory();
    return folder;
}

void twoClockReadsAndABufferWrite (benchmark::State& state)
{
    uint8_t buffer[4096];
    size_t cursor = 0;
    for (auto _ : state)
    {
        const uint64_t start = tov::readTraceClock();
        const uint64_t end = tov::readTraceClock();
        const uint64_t duration = end - start;
        std::memcpy (buffer + cursor, &duration, sizeof (duration));
        cursor = (cursor + sizeof (duration)) % sizeof (buffer);
        benchmark::ClobberMemory();
    }
    benchmark::DoNotOptimize (buffer);
}

void scopeOfUnrealProfilerToAFile (benchmark::State& state)
{
    const auto folder = makeTemporaryFolder();
    tov::Profiler::set (new tov::UnrealProfiler (tov::TraceWriterOptions(), folder.getChildFile ("scope.utrace")));
    for (auto _ : state)
        const tov::ProfilerScope scope ("Scope");
    tov::Profiler::set (nullptr);
    folder.deleteRecursively();
}

size_t getWriterMemory (tov::TraceWriter& writer)
{
    return writer.getImportantCacheSize() + writer.getNumBufferBlocks() * tov::TraceBufferPool::blockSize + writer.getTail().getSize();
}

/** Runs the scopes on their threads into the profiler, removes it, and prints what was read. */
void runSustained (const char* title, tov::UnrealProfiler* profiler, const std::function<std::vector<uint8_t>()>& takeStream)
{
    const auto start = std::chrono::steady_clock::now();
    tov::Profiler::set (profiler);
    std::vector<std::thread> threads;
    for (int t = 0; t < numSustainedThreads; ++t)
        threads.emplace_back ([]
        {
            for (int i = 0; i < scopesPerThread; ++i)
                const tov::ProfilerScope scope ("Sustained");
        });
    for (auto& thread : threads)
        thread.join();
    const auto scopesDone = std::chrono::steady_clock::now();
    const size_t writerMemory = getWriterMemory (profiler->getWriter());
    tov::Profiler::set (nullptr);
    const auto closed = std::chrono::steady_clock::now();

    const auto stream = takeStream();
    tov::TraceStreamReader reader;
    const bool whole = reader.read (stream.data(), stream.size());
    const tov::TraceReport report (reader);
    const size_t numScopes = numSustainedThreads * (size_t) scopesPerThread;
    const double scopeSeconds = std::chrono::duration<double> (scopesDone - start).count();
    const double closedSeconds = std::chrono::duration<double> (closed - start).count();
    std::printf ("%-8s %10zu %10zu %5s %12.0f %12.0f %10.1f %10.1f\n", title, numScopes, report.getScopes().size(), whole ? "yes" : "NO",
                 (double) numScopes / scopeSeconds, (double) numScopes / closedSeconds, (double) stream.size() / (double) numScopes,
                 (double) writerMemory / (double) numScopes);
    std::fflush (stdout);
}

void runSustainedRuns()
{
    std::printf ("\n%-8s %10s %10s %5s %12s %12s %10s %10s\n", "Sustained", "scopes", "read", "whole", "scopes/s", "to close/s", "bytes/scope", "memory/scope");
    const auto folder = makeTemporaryFolder();
    const auto file = folder.getChildFile ("sustained.utrace");
    runSustained ("file", new tov::UnrealProfiler (tov::TraceWriterOptions(), file), [&]
    {
        juce::MemoryBlock block;
        file.loadFileAsData (block);
        const auto* bytes = static_cast<const uint8_t*> (block.getData());
        return std::vector<uint8_t> (bytes, bytes + block.getSize());
    });
    folder.deleteRecursively();

    tov::TraceListener listener;
    if (! listener.listen (0))
        return;
    auto received = std::async (std::launch::async, [&] { return listener.receive (60000); });
    runSustained ("socket", new tov::UnrealProfiler (tov::TraceWriterOptions(), "127.0.0.1", listener.getPort()), [&] { return received.get(); });
}

} // namespace

int main (int argc, char** argv)
{
    const bool scopeOnly = argc > 1 && std::strcmp (argv[argc - 1], "--scope-only") == 0;
    if (scopeOnly)
        --argc;
    if (! tov::benchmarks::initializeWithRandomInterleaving (argc, argv))
        return 1;
    tov::initializeTov();
    tov::benchmarks::registerEachRepeated ({ { "TwoClockReadsAndABufferWrite", twoClockReadsAndABufferWrite },
                                             { "ScopeOfUnrealProfilerToAFile", scopeOfUnrealProfilerToAFile } },
                                           numRepetitions, benchmark::kNanosecond, 0.2);
    tov::benchmarks::runWithMedianReporter ([scopeOnly] (const tov::benchmarks::MedianReporter& reporter)
    {
        const double time = reporter.getMedianSeconds ("ScopeOfUnrealProfilerToAFile") * 1e9;
        const double limit = reporter.getMedianSeconds ("TwoClockReadsAndABufferWrite") * 1e9;
        std::printf ("\n%-34s %10s %10s %10s %8s\n", "Scope (ns per scope)", "time", "limit", "excess", "ratio");
        if (time > 0 && limit > 0)
            std::printf ("%-34s %10.2f %10.2f %10.2f %8.2f\n", "Unreal, to a file / clock + write", time, limit, time - limit, time / limit);
        std::fflush (stdout);

        if (! scopeOnly)
            runSustainedRuns();
    });
    tov::deinitializeTov();
    return 0;
}
