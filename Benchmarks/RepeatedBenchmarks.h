#pragma once

#include <benchmark/benchmark.h>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace tov::benchmarks
{

/** Registers a benchmark that runs numRepetitions times and is reported by its aggregates
    alone, in unit. Each repetition runs at least minSeconds; with 0, as long as
    --benchmark_min_time says (and a fixed number of iterations may then be set). */
template <class Function>
benchmark::internal::Benchmark* registerRepeated (const std::string& name, Function&& function, int numRepetitions,
                                                  benchmark::TimeUnit unit, double minSeconds = 0.0)
{
    auto* registered = benchmark::RegisterBenchmark (name.c_str(), std::forward<Function> (function))
                           ->Repetitions (numRepetitions)->ReportAggregatesOnly (true)->Unit (unit);
    return minSeconds > 0.0 ? registered->MinTime (minSeconds) : registered;
}

using BenchmarkFunction = void (*) (benchmark::State&);

/** registerRepeated for each of the functions under its name, in the order given. */
inline std::vector<benchmark::internal::Benchmark*> registerEachRepeated (std::initializer_list<std::pair<const char*, BenchmarkFunction>> functions,
                                                                          int numRepetitions, benchmark::TimeUnit unit, double minSeconds)
{
    std::vector<benchmark::internal::Benchmark*> registered;
    for (const auto& [name, function] : functions)
        registered.push_back (registerRepeated (name, function, numRepetitions, unit, minSeconds));
    return registered;
}

} // namespace tov::benchmarks
