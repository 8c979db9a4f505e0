// The tov-trace program on files.
#include "TraceTestSupport.h"
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <Tov/Standard/Profiler/Trace/TracePacket.h>
#include <Tov/Standard/Profiler/UnrealProfiler.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
struct ToolRun
{
    int exitCode = -1;
    juce::String output;
};

ToolRun runTool (const juce::StringArray& arguments)
{
    juce::ChildProcess process;
    juce::StringArray command (TOV_TRACE_TOOL_PATH);
    command.addArray (arguments);
    ToolRun run;
    if (! process.start (command, juce::ChildProcess::wantStdOut))
        return run;
    run.output = process.readAllProcessOutput();
    process.waitForProcessToFinish (20000);
    run.exitCode = (int) process.getExitCode();
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
    const auto port = getPortWithoutListener();
    juce::ChildProcess process;
    ASSERT_TRUE (process.start (juce::StringArray { TOV_TRACE_TOOL_PATH, "listen", juce::String (port), "summary" },
                                juce::ChildProcess::wantStdOut | juce::ChildProcess::wantStdErr));
    // The tool says when it listens; the profiler connects only then. A byte at a time, as
    // JUCE's read waits until the whole buffer is filled.
    juce::String output;
    char byte = 0;
    while (! output.contains ("listening on port " + juce::String (port) + "\n"))
    {
        ASSERT_EQ (process.readProcessOutput (&byte, 1), 1) << output;
        output += juce::String::charToString (byte);
    }
    {
        auto options = makeTestOptions (false);
        auto* profiler = new UnrealProfiler (options, "127.0.0.1", port);
        Profiler::set (profiler);
        for (int i = 0; i < 3; ++i)
            const ProfilerScope scope ("Listened");
        profiler->flushScopes();
        Profiler::set (nullptr);
    }
    output += process.readAllProcessOutput();
    EXPECT_TRUE (process.waitForProcessToFinish (20000));
    EXPECT_EQ (process.getExitCode(), 0u);
    // The first scope lasts 10 cycles more: its thread notes the clock for its first buffer.
    EXPECT_TRUE (output.contains ("  \"Listened\" count=3 total=0.040us mean=0.013us\n")) << output;
}
