// The tov-trace program on files.
#include "TraceTestSupport.h"
#include <Tov/Standard/Profiler/Trace/TracePacket.h>
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
