#pragma once

#include "MedianReporter.h"
#include "RepeatedBenchmarks.h"
#include <benchmark/benchmark.h>
#include <cstdio>
#include <string>

namespace tov::benchmarks
{

/** Registers "<operation>/<first>" and "<operation>/<second>" for each of the operations, as
    runFirst (state, operation index) and runSecond (state, operation index): the same work done
    by two contestants, five repetitions each, reported in milliseconds by their aggregates. */
template <class RunFirst, class RunSecond>
void registerPairedBenchmarks (const char* const* operationNames, int numOperations,
                               const std::string& first, RunFirst runFirst,
                               const std::string& second, RunSecond runSecond)
{
    constexpr int numRepetitions = 5;
    for (int i = 0; i < numOperations; ++i)
    {
        const std::string operation (operationNames[i]);
        registerRepeated (operation + "/" + first, [runFirst, i] (benchmark::State& state) { runFirst (state, i); },
                          numRepetitions, benchmark::kMillisecond, 0.5);
        registerRepeated (operation + "/" + second, [runSecond, i] (benchmark::State& state) { runSecond (state, i); },
                          numRepetitions, benchmark::kMillisecond, 0.5);
    }
}

/** Prints the header and one row per operation that ran: the two contestants' median CPU times in
    nanoseconds per unit of work (getCount (operation index) units per run), and the first divided
    by the second. */
template <class GetCount>
void printPairedRatioTable (const MedianReporter& reporter, const char* const* operationNames, int numOperations,
                            const std::string& first, const std::string& firstColumn,
                            const std::string& second, const std::string& secondColumn, GetCount getCount)
{
    std::printf ("%-13s %16s %16s %8s\n", "Operation", firstColumn.c_str(), secondColumn.c_str(), "Ratio");
    for (int i = 0; i < numOperations; ++i)
    {
        const std::string operation (operationNames[i]);
        const double count = (double) getCount (i);
        const double firstTime = reporter.getMedianSeconds (operation + "/" + first) / count * 1e9;
        const double secondTime = reporter.getMedianSeconds (operation + "/" + second) / count * 1e9;
        if (firstTime > 0 && secondTime > 0)
            std::printf ("%-13s %16.1f %16.1f %8.2f\n", operation.c_str(), firstTime, secondTime, firstTime / secondTime);
    }
    std::fflush (stdout);
}

} // namespace tov::benchmarks
