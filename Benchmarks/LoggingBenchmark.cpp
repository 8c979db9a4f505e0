#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/LoggerExecutionContextView.h>
#include <Tov/Standard/Program.h>
#include <benchmark/benchmark.h>
#include <juce_events/juce_events.h>
#include <cstdlib>

// What a reporting thread pays for one message. Through a logger view that is
// string building and a few locked appends to the logger's queue; the disk is
// the logger thread's business, so the figure must not depend on it.

namespace
{

constexpr int numCallsPerRun = 10000;
constexpr int numRuns = 9;

void informationWithoutViews (benchmark::State& state)
{
    tov::ExecutionContext context;
    for (auto _ : state)
        context.information ("Rendered frame 1234 in 16.6 ms");
}

void informationThroughLoggerView (benchmark::State& state)
{
    tov::Program program ("LoggingBenchmark", "main", 1, 0, 0, "benchmark");
    program.startProgram();
    tov::ExecutionContext context;
    context.addView (new tov::LoggerExecutionContextView ("Benchmark"));
    program.getLoggerThread()->waitUntilDrained (10000);

    for (auto _ : state)
        context.information ("Rendered frame 1234 in 16.6 ms");

    // Outside the measure: let the logger catch up, so that runs do not pile up.
    context.deleteAllViews();
    program.getLoggerThread()->waitUntilDrained (600000);
    program.stopProgram();
}

} // namespace

BENCHMARK (informationWithoutViews)
    ->Iterations (numCallsPerRun)->Repetitions (numRuns)->ReportAggregatesOnly (true)->Unit (benchmark::kNanosecond);
BENCHMARK (informationThroughLoggerView)
    ->Iterations (numCallsPerRun)->Repetitions (numRuns)->ReportAggregatesOnly (true)->Unit (benchmark::kNanosecond);

// Logs go to a scratch home folder, not to the user's.
int main (int argc, char** argv)
{
    const auto home = juce::File::getSpecialLocation (juce::File::tempDirectory).getChildFile ("tovLoggingBenchmark");
    home.deleteRecursively();
    home.createDirectory();
    ::setenv ("HOME", home.getFullPathName().toRawUTF8(), 1);

    // A program starts on JUCE's message thread, as in an application.
    const juce::ScopedJuceInitialiser_GUI juce;
    benchmark::Initialize (&argc, argv);
    if (benchmark::ReportUnrecognizedArguments (argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();

    home.deleteRecursively();
    return 0;
}
