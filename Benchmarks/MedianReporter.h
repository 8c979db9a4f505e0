#pragma once

#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>
#include <string>
#include <unistd.h>

namespace tov::benchmarks
{

/** Prints the runs as the console reporter does, and keeps the median of each benchmark's
    repetitions, so that a program can print its ratio table last. */
class MedianReporter : public benchmark::ConsoleReporter
{
public:
    MedianReporter() : ConsoleReporter (isatty (fileno (stdout)) ? OO_ColorTabular : OO_Tabular) {}

    void ReportRuns (const std::vector<Run>& runs) override
    {
        for (const auto& run : runs)
            if (! run.error_occurred && run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                medians[run.run_name.function_name] = run;
        ConsoleReporter::ReportRuns (runs);
    }

    /** The median CPU time of a benchmark in seconds; 0 when it did not run. */
    double getMedianSeconds (const std::string& name) const
    {
        const auto found = medians.find (name);
        return found != medians.end() ? found->second.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier (found->second.time_unit) : 0.0;
    }

    /** The median wall-clock time of a benchmark in seconds; 0 when it did not run. */
    double getMedianRealSeconds (const std::string& name) const
    {
        const auto found = medians.find (name);
        return found != medians.end() ? found->second.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier (found->second.time_unit) : 0.0;
    }

    /** The median of a counter of a benchmark; defaultValue when there is none. */
    double getMedianCounter (const std::string& name, const std::string& counter, double defaultValue = -1.0) const
    {
        const auto found = medians.find (name);
        if (found == medians.end())
            return defaultValue;
        const auto value = found->second.counters.find (counter);
        return value != found->second.counters.end() ? value->second.value : defaultValue;
    }

private:
    std::map<std::string, Run> medians;
};

/** Runs the benchmarks that the command line selects through a MedianReporter, hands it to
    printTables (which may measure more of its own), then shuts Google Benchmark down. */
template <class PrintTables>
void runWithMedianReporter (PrintTables&& printTables)
{
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks (&reporter);
    printTables (reporter);
    benchmark::Shutdown();
}

} // namespace tov::benchmarks
