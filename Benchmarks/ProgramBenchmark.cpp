#include <Tov/Core/Library.h>
#include <Tov/Standard/Program.h>
#include <benchmark/benchmark.h>
#include <juce_events/juce_events.h>
#include <chrono>
#include <vector>
#include <cstdlib>

// The start of an empty program: from the call of startProgram to the moment its
// programStarted runs. The logger thread writes on its own time, so its first flush
// is not part of the figure; the stop is outside the measure too. The peer is the
// start of JUCE itself, an empty juce::ScopedJuceInitialiser_GUI, which every
// application pays before its program starts.

namespace
{

using Clock = std::chrono::steady_clock;

class EmptyProgram : public tov::Program
{
public:
    EmptyProgram() : Program ("ProgramBenchmark", "main", 1, 0, 0, "benchmark") {}
    Clock::time_point started;

protected:
    bool programStarted() override
    {
        started = Clock::now();
        return true;
    }
};

// The first start in a process also loads fonts for the text drawing warm-up: kept apart,
// with the time of each of its steps.
double firstStartMilliseconds = -1.0;
std::vector<std::pair<std::string, Clock::time_point>> firstStartSteps;

void startOfAnEmptyProgram (benchmark::State& state)
{
    const juce::ScopedJuceInitialiser_GUI juce;
    if (firstStartMilliseconds < 0.0)
        tov::Program::setSequenceListener ([] (const char* step) { firstStartSteps.emplace_back (step, Clock::now()); });
    for (auto _ : state)
    {
        EmptyProgram program;
        const auto start = Clock::now();
        program.startProgram();
        const auto seconds = std::chrono::duration<double> (program.started - start).count();
        if (firstStartMilliseconds < 0.0)
        {
            firstStartMilliseconds = seconds * 1000.0;
            tov::Program::setSequenceListener (nullptr);
            firstStartSteps.emplace_back ("(programStarted)", program.started);
        }
        state.SetIterationTime (seconds);
        program.getLoggerThread()->waitUntilDrained (10000);
        program.stopProgram();
    }
}

// What every start must do at least: build and take down the library tree.
void buildOfTheLibraryTree (benchmark::State& state)
{
    for (auto _ : state)
    {
        const auto start = Clock::now();
        tov::initializeTov();
        state.SetIterationTime (std::chrono::duration<double> (Clock::now() - start).count());
        tov::deinitializeTov();
    }
}

void startOfJuce (benchmark::State& state)
{
    for (auto _ : state)
    {
        const auto start = Clock::now();
        {
            const juce::ScopedJuceInitialiser_GUI juce;
            state.SetIterationTime (std::chrono::duration<double> (Clock::now() - start).count());
        }
    }
}

} // namespace

BENCHMARK (buildOfTheLibraryTree)->UseManualTime()->Iterations (20)->Repetitions (5)->ReportAggregatesOnly (true)->Unit (benchmark::kMillisecond);
BENCHMARK (startOfJuce)->UseManualTime()->Iterations (20)->Repetitions (5)->ReportAggregatesOnly (true)->Unit (benchmark::kMillisecond);
BENCHMARK (startOfAnEmptyProgram)->UseManualTime()->Iterations (20)->Repetitions (5)->ReportAggregatesOnly (true)->Unit (benchmark::kMillisecond);

namespace
{
/** Prints the median of each benchmark and the program's start over JUCE's. */
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns (const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns (runs);
        for (const auto& run : runs)
            if (run.aggregate_name == "median")
                medians[run.run_name.function_name] = run.GetAdjustedRealTime();
    }
    void Finalize() override
    {
        ConsoleReporter::Finalize();
        std::printf ("\nSteps of the first start in the process:\n");
        for (size_t i = 0; i + 1 < firstStartSteps.size(); ++i)
            std::printf ("  %-32s %8.3f ms\n", firstStartSteps[i].first.c_str(),
                         std::chrono::duration<double, std::milli> (firstStartSteps[i + 1].second - firstStartSteps[i].second).count());
        const auto program = medians["startOfAnEmptyProgram"], tree = medians["buildOfTheLibraryTree"], juce = medians["startOfJuce"];
        if (program > 0 && tree > 0 && juce > 0)
            std::printf ("\nMedian start of an empty program %.3f ms (first in the process %.3f ms); library tree %.3f ms, "
                         "ratio program / tree %.2f; JUCE's GUI initialiser %.4f ms, ratio program / JUCE %.0f\n",
                         program, firstStartMilliseconds, tree, program / tree, juce, program / juce);
    }

private:
    std::map<std::string, double> medians;
};
} // namespace

// Logs and configurations go to a scratch home folder, not to the user's.
int main (int argc, char** argv)
{
    const auto home = juce::File::getSpecialLocation (juce::File::tempDirectory).getChildFile ("tovProgramBenchmark");
    home.deleteRecursively();
    home.createDirectory();
    ::setenv ("HOME", home.getFullPathName().toRawUTF8(), 1);
    ::unsetenv ("DISPLAY");

    benchmark::Initialize (&argc, argv);
    if (benchmark::ReportUnrecognizedArguments (argc, argv))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks (&reporter);
    benchmark::Shutdown();
    home.deleteRecursively();
    return 0;
}
