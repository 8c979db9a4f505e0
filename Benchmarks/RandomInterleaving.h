#pragma once

#include <benchmark/benchmark.h>
#include <vector>

namespace tov::benchmarks
{

/** Initialises Google Benchmark with its runs interleaved at random, so that a change of load on
    a shared machine spreads over all contestants alike; arguments of the command line come
    after, and may turn it off. False when an argument is not recognised. */
inline bool initializeWithRandomInterleaving (int argc, char** argv)
{
    std::vector<char*> arguments { argv[0], const_cast<char*> ("--benchmark_enable_random_interleaving=true") };
    arguments.insert (arguments.end(), argv + 1, argv + argc);
    int numArguments = (int) arguments.size();
    benchmark::Initialize (&numArguments, arguments.data());
    return ! benchmark::ReportUnrecognizedArguments (numArguments, arguments.data());
}

} // namespace tov::benchmarks
