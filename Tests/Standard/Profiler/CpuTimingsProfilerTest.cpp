#include "ProfilerTestSupport.h"
#include "../../Support/DebugOutputCapture.h"
#include <Tov/Standard/Profiler/CpuTimingsProfiler.h>
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <Tov/Standard/Service.h>
#include <gtest/gtest.h>
#include <chrono>
#include <cstring>
#include <thread>

using namespace tov;
using namespace tov::test;

namespace
{

double fakeNow = 0.0;
double fakeClock()   { return fakeNow; }

/** A CpuTimingsProfiler on the fake clock, installed, with the calling thread as its rendering thread. */
struct FakeClockProfiler : InstalledProfiler<CpuTimingsProfiler>
{
    FakeClockProfiler() : InstalledProfiler (&fakeClock)
    {
        fakeNow = 0.0;
        get()->setRenderingThreadId (getCurrentJuceThreadId());
    }
};

} // namespace

TEST (CpuTimingsProfilerTest, TheReportShowsParentsBeforeTheirChildrenIndentedByDepth)
{
    FakeClockProfiler profiler;
    profiler->beginFrame();
    {
        const ProfilerScope outer ("Outer");
        fakeNow = 2.0;
        {
            const ProfilerScope first ("First");
            fakeNow = 5.5;
        }
        {
            const ProfilerScope second ("Second");
            fakeNow = 6.0;
        }
        fakeNow = 10.0;
    }
    DebugOutputCapture output;
    profiler->endFrame();
    EXPECT_EQ (output.getText(), "Kelvo frame report\n"
                                 " Outer;10\n"
                                 "  Second;0.5\n"
                                 "  First;3.5\n");
}

TEST (CpuTimingsProfilerTest, FinishedEventsKeepTheirTimesAndDepthInTheOrderTheyEnded)
{
    FakeClockProfiler profiler;
    fakeNow = 1.0;
    profiler->beginEvent ("Outer", 7);
    fakeNow = 2.0;
    profiler->beginEvent ("Inner", 0);
    fakeNow = 4.0;
    profiler->endEvent();
    fakeNow = 8.0;
    profiler->endEvent();

    const auto& events = profiler->getFinishedEvents();
    ASSERT_EQ (events.size(), 2u);
    EXPECT_EQ (events[0].name, "Inner");
    EXPECT_EQ (events[0].startTime, 2.0);
    EXPECT_EQ (events[0].endTime, 4.0);
    EXPECT_EQ (events[0].level, 2);
    EXPECT_EQ (events[1].name, "Outer");
    EXPECT_EQ (events[1].startTime, 1.0);
    EXPECT_EQ (events[1].endTime, 8.0);
    EXPECT_EQ (events[1].level, 1);
}

TEST (CpuTimingsProfilerTest, ANameIsReadAgainWhenItsTextChangedInPlace)
{
    FakeClockProfiler profiler;
    char name[16];
    std::strcpy (name, "First");
    { const ProfilerScope scope (name); }
    std::strcpy (name, "Other");
    { const ProfilerScope scope (name); }
    const auto& events = profiler->getFinishedEvents();
    ASSERT_EQ (events.size(), 2u);
    EXPECT_EQ (events[0].name, "First");
    EXPECT_EQ (events[1].name, "Other");
}

TEST (CpuTimingsProfilerTest, AFrameBeginsWithEmptyLists)
{
    FakeClockProfiler profiler;
    { const ProfilerScope scope ("Before"); }
    fakeNow = 3.0;
    profiler->markEvent ("Marked");
    ASSERT_EQ (profiler->getFinishedEvents().size(), 1u);
    ASSERT_EQ (profiler->getMarkers().size(), 1u);
    EXPECT_EQ (profiler->getMarkers()[0].name, "Marked");
    EXPECT_EQ (profiler->getMarkers()[0].time, 3.0);

    profiler->beginFrame();
    EXPECT_TRUE (profiler->getFinishedEvents().empty());
    EXPECT_TRUE (profiler->getMarkers().empty());

    DebugOutputCapture output;
    profiler->endFrame();
    EXPECT_EQ (output.getText(), "Kelvo frame report\n");
}

TEST (CpuTimingsProfilerTest, OnlyTheRenderingThreadIsRecorded)
{
    FakeClockProfiler profiler;
    profiler->setUserInterfaceThreadId (getCurrentJuceThreadId());
    profiler->setRenderingThreadId (Service::getInvalidThreadId());
    { const ProfilerScope scope ("Interface"); }
    profiler->markEvent ("Interface");
    runOnJuceThread ("Worker", [] { const ProfilerScope scope ("Worker"); Profiler::get()->markEvent ("Worker"); });
    EXPECT_TRUE (profiler->getFinishedEvents().empty());
    EXPECT_TRUE (profiler->getMarkers().empty());
}

TEST (CpuTimingsProfilerTest, TheRenderingThreadLeftOutRecordsNothing)
{
    FakeClockProfiler profiler;
    profiler->setRecordRenderingThread (false);
    { const ProfilerScope scope ("Render"); }
    EXPECT_TRUE (profiler->getFinishedEvents().empty());
}

// Known durations: sleeps inside the scopes, measured by the test's own clock around them. The
// report's times fall within the test's, and the sleeps are long against the tolerance of
// 1 ms, which covers the clock reads of the profiler.
TEST (CpuTimingsProfilerTest, TheReportMeasuresScopesOfKnownDurations)
{
    InstalledProfiler<CpuTimingsProfiler> profiler;
    profiler->setRenderingThreadId (getCurrentJuceThreadId());
    using Clock = std::chrono::steady_clock;
    const auto since = [] (Clock::time_point start) { return std::chrono::duration<double, std::milli> (Clock::now() - start).count(); };

    profiler->beginFrame();
    double outerMeasured, innerMeasured;
    {
        const auto outerStart = Clock::now();
        const ProfilerScope outer ("Outer");
        std::this_thread::sleep_for (std::chrono::milliseconds (10));
        {
            const auto innerStart = Clock::now();
            const ProfilerScope inner ("Inner");
            std::this_thread::sleep_for (std::chrono::milliseconds (20));
            innerMeasured = since (innerStart);
        }
        outerMeasured = since (outerStart);
    }
    DebugOutputCapture output;
    profiler->endFrame();

    juce::StringArray lines;
    lines.addLines (juce::String (output.getText()).trimEnd());
    ASSERT_EQ (lines.size(), 3) << output.getText();
    EXPECT_EQ (lines[0], "Kelvo frame report");
    ASSERT_TRUE (lines[1].startsWith (" Outer;"));
    ASSERT_TRUE (lines[2].startsWith ("  Inner;"));
    const double outer = lines[1].fromFirstOccurrenceOf (";", false, false).getDoubleValue();
    const double inner = lines[2].fromFirstOccurrenceOf (";", false, false).getDoubleValue();
    EXPECT_GE (inner, 20.0);
    EXPECT_NEAR (inner, innerMeasured, 1.0);
    EXPECT_GE (outer, 30.0);
    EXPECT_NEAR (outer, outerMeasured, 1.0);
    // Printed with six digits, and the profiler's clock counts whole microseconds.
    EXPECT_LE (inner, innerMeasured + 0.01);
    EXPECT_LE (outer, outerMeasured + 0.01);
}
