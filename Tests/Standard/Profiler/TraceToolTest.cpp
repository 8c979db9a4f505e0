// The tov-trace program on files.
#include "TraceTestSupport.h"
#include "Support/FreePort.h"
#include "Support/TestProcess.h"
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <Tov/Standard/Profiler/Trace/TracePacket.h>
#include <Tov/Standard/Profiler/UnrealProfiler.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
constexpr int timeOut = 20000;

/** The tool with the arguments; its output and error output go to one pipe. */
std::unique_ptr<TestProcess> startTool (const juce::StringArray& arguments)
{
    juce::StringArray command (TOV_TRACE_TOOL_PATH);
    command.addArray (arguments);
    auto process = std::make_unique<TestProcess> (command, std::map<juce::String, juce::String>());
    EXPECT_TRUE (process->isStarted());
    return process;
}

struct ToolRun
{
    int exitCode = -1;
    juce::String output;
};

/** Runs the tool to its end. A run that succeeds writes nothing to its error output. */
ToolRun runTool (const juce::StringArray& arguments)
{
    auto process = startTool (arguments);
    ToolRun run;
    run.exitCode = process->waitForExit (timeOut);
    run.output = process->getOutput();
    return run;
}
} // namespace

TEST (TraceToolTest, SummaryAndDumpOfTheGoldenFile)
{
    const auto summary = runTool ({ "summary", TOV_TRACE_GOLDEN_FILE });
    EXPECT_EQ (summary.exitCode, 0);
    EXPECT_EQ (summary.output.toStdString(), summaryOf (readStream (juce::File (TOV_TRACE_GOLDEN_FILE))));
    const auto dump = runTool ({ "dump", TOV_TRACE_GOLDEN_FILE });
    EXPECT_EQ (dump.exitCode, 0);
    EXPECT_TRUE (dump.output.startsWith ("handshake magic=0x54524332 "));
}

TEST (TraceToolTest, ADamagedFileExitsWith1AndAMissingOneWith2)
{
    juce::TemporaryFile temporary (".utrace");
    auto stream = TracePacket::makeHandshake();
    stream.push_back (9);
    temporary.getFile().replaceWithData (stream.data(), stream.size());
    EXPECT_EQ (runTool ({ "summary", temporary.getFile().getFullPathName() }).exitCode, 1);
    EXPECT_EQ (runTool ({ "summary", "/nonexistent.utrace" }).exitCode, 2);
    EXPECT_EQ (runTool ({ "other" }).exitCode, 2);
}

TEST (TraceToolTest, ListenTakesAStreamFromTheProfilerAndPrintsIt)
{
    const auto port = findFreePort();
    auto process = startTool ({ "listen", juce::String (port), "summary" });
    // The tool says when it listens; the profiler connects only then.
    const auto listening = "listening on port " + std::to_string (port) + "\n";
    ASSERT_TRUE (process->waitForOutput ([&] (const std::string& output) { return output.find (listening) != std::string::npos; }, timeOut))
        << process->getOutput();
    {
        auto options = makeTestOptions (false);
        auto* profiler = new UnrealProfiler (options, "127.0.0.1", (uint16_t) port);
        Profiler::set (profiler);
        for (int i = 0; i < 3; ++i)
            const ProfilerScope scope ("Listened");
        profiler->flushScopes();
        Profiler::set (nullptr);
    }
    EXPECT_EQ (process->waitForExit (timeOut), 0) << process->getOutput();
    // The first scope lasts 10 cycles more: its thread notes the clock for its first buffer.
    const auto& output = process->getOutput();
    EXPECT_NE (output.find ("  \"Listened\" count=3 total=0.040us mean=0.013us\n"), std::string::npos) << output;
}
