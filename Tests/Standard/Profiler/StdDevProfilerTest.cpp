#include "ProfilerTestSupport.h"
#include "../../Support/DebugOutputCapture.h"
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <Tov/Standard/Profiler/StdDevProfiler.h>
#include <Tov/Standard/Service.h>
#include <gtest/gtest.h>
#include <chrono>
#include <thread>

using namespace tov;
using namespace tov::test;

namespace
{

double fakeNow = 0.0;
double fakeClock()   { return fakeNow; }

using Kind = StdDevProfiler::LabelKind;

/** A StdDevProfiler on the fake clock, installed, with the calling thread as its rendering thread. */
struct FakeClockProfiler : InstalledProfiler<StdDevProfiler>
{
    FakeClockProfiler() : InstalledProfiler (&fakeClock)
    {
        fakeNow = 0.0;
        get()->setRenderingThreadId (getCurrentJuceThreadId());
    }

    /** Begins frames until the frame count reaches the number, at the fake time. */
    void beginFramesUntil (uint64_t frameNumber)
    {
        while (get()->getFrameCount() < frameNumber)
            get()->beginFrame();
    }
};

juce::String threadName()   { return Profiler::getCurrentThreadName(); }

} // namespace

TEST (StdDevProfilerTest, ScopesAndMarksAreLabelledByTheirNames)
{
    FakeClockProfiler profiler;
    profiler.beginFramesUntil (1);
    { const ProfilerScope scope ("Draw"); }
    profiler->markEvent ("Swap");
    for (auto kind : { Kind::begin, Kind::end, Kind::mark })
        ASSERT_NE (profiler->findEvent (kind == Kind::mark ? "Swap" : "Draw", kind), nullptr);
    EXPECT_EQ (profiler->findEvent ("Draw", Kind::begin)->getLabel(), "Draw (Begin)");
    EXPECT_EQ (profiler->findEvent ("Draw", Kind::end)->getLabel(), "Draw (End)");
    EXPECT_EQ (profiler->findEvent ("Swap", Kind::mark)->getLabel(), "Swap");
    EXPECT_EQ (profiler->findEvent ("Swap", Kind::begin), nullptr);
}

TEST (StdDevProfilerTest, TheStatisticsAreOfTheTimeSinceTheFrameBegan)
{
    FakeClockProfiler profiler;
    for (double offset : { 2.0, 4.0 })
    {
        fakeNow += 100.0;
        profiler->beginFrame();
        fakeNow += offset;
        profiler->markEvent ("Tick");
    }
    const auto* event = profiler->findEvent ("Tick", Kind::mark);
    ASSERT_NE (event, nullptr);
    EXPECT_EQ (event->getNumSamples(), 2u);
    EXPECT_EQ (event->getOffsets().getValues(), (std::vector<double> { 2.0, 4.0 }));
    EXPECT_EQ (event->getSquaredOffsets().getValues(), (std::vector<double> { 4.0, 16.0 }));
    EXPECT_EQ (event->getOffsets().getMean(), 3.0);
    EXPECT_EQ (event->getOffsets().getStandardDeviation(), 1.0);
}

TEST (StdDevProfilerTest, BeforeTheFirstFrameOccurrencesAreCountedWithoutOffsets)
{
    FakeClockProfiler profiler;
    DebugOutputCapture output;
    fakeNow = 5.0;
    profiler->markEvent ("Early");
    const auto* event = profiler->findEvent ("Early", Kind::mark);
    ASSERT_NE (event, nullptr);
    EXPECT_EQ (event->getNumSamples(), 1u);
    EXPECT_EQ (event->getOffsets().getNumValues(), 0u);
    // Frame number 0 is a multiple of the period.
    EXPECT_EQ (output.getText(), (threadName() + " ======> Early MEAN: 0 +/- 0\n").toStdString());
    EXPECT_EQ (event->getLastTime(), 5.0);
}

TEST (StdDevProfilerTest, ALabelIsPrintedOnlyOnFramesWhoseNumberIsAMultipleOf100)
{
    FakeClockProfiler profiler;
    DebugOutputCapture output;
    std::vector<uint64_t> printedFrames;
    for (uint64_t frame = 1; frame <= 250; ++frame)
    {
        fakeNow = (double) frame * 20.0;
        profiler->beginFrame();
        fakeNow += 2.5;
        const auto before = output.getText().size();
        profiler->markEvent ("Tick");
        if (output.getText().size() != before)
            printedFrames.push_back (frame);
    }
    EXPECT_EQ (printedFrames, (std::vector<uint64_t> { 100, 200 }));
    EXPECT_EQ (output.getText(), (threadName() + " ======> Tick MEAN: 2.5 +/- 0\n" + threadName() + " ======> Tick MEAN: 2.5 +/- 0\n").toStdString());
    EXPECT_EQ (profiler->findEvent ("Tick", Kind::mark)->getLastTime(), 200.0 * 20.0 + 2.5);
}

TEST (StdDevProfilerTest, EveryOccurrenceOfADueFramePrints)
{
    FakeClockProfiler profiler;
    profiler.beginFramesUntil (100);
    DebugOutputCapture output;
    fakeNow = 1.0;
    { const ProfilerScope scope ("Draw"); }
    fakeNow = 3.0;
    { const ProfilerScope scope ("Draw"); }
    const auto name = threadName();
    EXPECT_EQ (output.getText(), (name + " ======> Draw (Begin) MEAN: 1 +/- 0\n"
                                  + name + " ======> Draw (End) MEAN: 1 +/- 0\n"
                                  + name + " ======> Draw (Begin) MEAN: 2 +/- 1\n"
                                  + name + " ======> Draw (End) MEAN: 2 +/- 1\n").toStdString());
}

TEST (StdDevProfilerTest, TheStatisticsKeepTheLast100Occurrences)
{
    FakeClockProfiler profiler;
    DebugOutputCapture output;
    for (int frame = 1; frame <= 150; ++frame)
    {
        fakeNow = frame * 100.0;
        profiler->beginFrame();
        fakeNow += frame <= 50 ? 9.0 : 1.0;
        profiler->markEvent ("Tick");
    }
    const auto* event = profiler->findEvent ("Tick", Kind::mark);
    EXPECT_EQ (event->getNumSamples(), 150u);
    EXPECT_EQ (event->getOffsets().getNumValues(), 100u);
    EXPECT_EQ (event->getOffsets().getMean(), 1.0);
    EXPECT_EQ (output.getText(), (threadName() + " ======> Tick MEAN: 5 +/- 4\n").toStdString());
}

TEST (StdDevProfilerTest, EachThreadHasStatisticsOfItsOwnAndPrintsItsName)
{
    FakeClockProfiler profiler;
    DebugOutputCapture output;
    fakeNow = 7.0;
    runOnJuceThread ("Decoder", [] { Profiler::get()->markEvent ("Tick"); });
    std::string plainName;
    runOnPlainThread ([&] { Profiler::get()->markEvent ("Tick"); plainName = threadName().toStdString(); });
    EXPECT_EQ (profiler->findEvent ("Tick", Kind::mark), nullptr);
    EXPECT_EQ (output.getText(), "Decoder ======> Tick MEAN: 0 +/- 0\n" + plainName + " ======> Tick MEAN: 0 +/- 0\n");
    EXPECT_EQ (plainName.find_first_not_of ("0123456789"), std::string::npos);
}

TEST (StdDevProfilerTest, OtherThreadsLeftOutAreNotRecorded)
{
    FakeClockProfiler profiler;
    profiler->setRecordOtherThreads (false);
    profiler->setRenderingThreadId (Service::getInvalidThreadId());
    { const ProfilerScope scope ("Left out"); }
    profiler->markEvent ("Left out");
    EXPECT_EQ (profiler->findEvent ("Left out", Kind::begin), nullptr);
    EXPECT_EQ (profiler->findEvent ("Left out", Kind::mark), nullptr);
}

// Known durations: in each of 100 frames a scope begins after a sleep and ends after another,
// and the test's own clock measures the offsets just around the profiler's. The lines printed
// at the 100th frame give their means within 0.5 ms.
TEST (StdDevProfilerTest, TheReportGivesTheOffsetsOfScopesOfKnownDurations)
{
    InstalledProfiler<StdDevProfiler> profiler;
    profiler->setRenderingThreadId (getCurrentJuceThreadId());
    using Clock = std::chrono::steady_clock;
    const auto since = [] (Clock::time_point start) { return std::chrono::duration<double, std::milli> (Clock::now() - start).count(); };

    constexpr int numFrames = 100;
    double beginOffsets = 0.0, endOffsets = 0.0;
    DebugOutputCapture output;
    for (int frame = 0; frame < numFrames; ++frame)
    {
        const auto frameStart = Clock::now();
        profiler->beginFrame();
        std::this_thread::sleep_for (std::chrono::milliseconds (1));
        {
            beginOffsets += since (frameStart);
            const ProfilerScope scope ("Work");
            std::this_thread::sleep_for (std::chrono::milliseconds (2));
        }
        endOffsets += since (frameStart);
    }

    juce::StringArray lines;
    lines.addLines (juce::String (output.getText()).trimEnd());
    ASSERT_EQ (lines.size(), 2) << output.getText();
    const auto meanOf = [] (const juce::String& line) { return line.fromFirstOccurrenceOf (" MEAN: ", false, false).upToFirstOccurrenceOf (" +/- ", false, false).getDoubleValue(); };
    ASSERT_TRUE (lines[0].startsWith (threadName() + " ======> Work (Begin) MEAN: ")) << lines[0];
    ASSERT_TRUE (lines[1].startsWith (threadName() + " ======> Work (End) MEAN: ")) << lines[1];
    EXPECT_GE (meanOf (lines[0]), 1.0);
    EXPECT_NEAR (meanOf (lines[0]), beginOffsets / numFrames, 0.5);
    EXPECT_GE (meanOf (lines[1]), 3.0);
    EXPECT_NEAR (meanOf (lines[1]), endOffsets / numFrames, 0.5);
}
