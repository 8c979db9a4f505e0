#pragma once

#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>
#include <string>
#include <unistd.h>

namespace tov::benchmarks
{

/** Prints the runs as the console reporter does, and keeps the median of each benchmark's
    repetitions (CPU time and counters) for the tables and ratios a program prints last. */
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

    /** The median CPU time of the benchmark in seconds; 0 when it did not run or failed. */
    double getMedianSeconds (const std::string& name) const
    {
        const auto found = medians.find (name);
        return found != medians.end() ? found->second.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier (found->second.time_unit) : 0.0;
    }

    /** The median value of one of the benchmark's counters; fallback when there is none. */
    double getMedianCounter (const std::string& name, const std::string& counter, double fallback) const
    {
        const auto found = medians.find (name);
        if (found == medians.end())
            return fallback;
        const auto value = found->second.counters.find (counter);
        return value != found->second.counters.end() ? value->second.value : fallback;
    }

private:
    std::map<std::string, Run> medians;
};

} // namespace tov::benchmarks
