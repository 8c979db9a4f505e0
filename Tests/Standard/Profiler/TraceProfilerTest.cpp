#include "ProfilerTestSupport.h"
#include "../../Support/DebugOutputCapture.h"
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <Tov/Standard/Profiler/TraceProfiler.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

TEST (TraceProfilerTest, ScopesAndMarksArePrintedAsTheyHappen)
{
    InstalledProfiler<TraceProfiler> profiler;
    DebugOutputCapture output;
    {
        const ProfilerScope outer ("Outer");
        profiler->markEvent ("Now");
        const ProfilerScope inner ("Inner");
    }
    EXPECT_EQ (output.getText(), "Outer -> Begin\nNow -> Tick\nInner -> Begin\nInner -> End\nOuter -> End\n");
}

TEST (TraceProfilerTest, FramesPrintNothing)
{
    InstalledProfiler<TraceProfiler> profiler;
    profiler->setRenderingThreadId (getCurrentJuceThreadId());
    DebugOutputCapture output;
    profiler->beginFrame();
    profiler->endFrame();
    EXPECT_EQ (output.getText(), "");
}

TEST (TraceProfilerTest, EveryThreadIsRecorded)
{
    InstalledProfiler<TraceProfiler> profiler;
    DebugOutputCapture output;
    runOnPlainThread ([] { const ProfilerScope scope ("Elsewhere"); });
    EXPECT_EQ (output.getText(), "Elsewhere -> Begin\nElsewhere -> End\n");
}

TEST (TraceProfilerTest, AThreadClassLeftOutPrintsNothing)
{
    InstalledProfiler<TraceProfiler> profiler;
    profiler->setRecordOtherThreads (false);
    DebugOutputCapture output;
    {
        const ProfilerScope scope ("Quiet");
        profiler->markEvent ("Quiet");
    }
    EXPECT_EQ (output.getText(), "");
}
