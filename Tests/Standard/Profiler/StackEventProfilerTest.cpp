#include "ProfilerTestSupport.h"
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace tov;
using namespace tov::test;

namespace
{
using Calls = std::vector<std::string>;
} // namespace

TEST (StackEventProfilerTest, EndEventWithoutABeginDoesNothing)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    profiler->endEvent();
    EXPECT_TRUE (profiler->getCalls().empty());
    EXPECT_EQ (profiler->getCurrentThreadStackDepth(), 0u);
}

TEST (StackEventProfilerTest, EventsEndInTheReverseOrderOfTheirBeginning)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    profiler->beginEvent ("A", 1);
    profiler->beginEvent ("B", 2);
    EXPECT_EQ (profiler->getCurrentThreadStackDepth(), 2u);
    profiler->endEvent();
    profiler->beginEvent ("C", 3);
    profiler->endEvent();
    profiler->endEvent();
    profiler->endEvent();
    EXPECT_EQ (profiler->getCalls(), (Calls { "make A 1", "make B 2", "finished B at 2", "make C 3", "finished C at 2", "finished A at 1" }));
    EXPECT_EQ (profiler->getCurrentThreadStackDepth(), 0u);
}

TEST (StackEventProfilerTest, AProfilerOfTheRenderingThreadAloneIgnoresOtherThreads)
{
    InstalledProfiler<RecordingStackProfiler> profiler (false);
    const ProfilerScope ignored ("Ignored");
    EXPECT_TRUE (profiler->getCalls().empty());

    profiler->setRenderingThreadId (getCurrentJuceThreadId());
    const ProfilerScope recorded ("Recorded");
    EXPECT_EQ (profiler->getCalls(), (Calls { "make Recorded 0" }));
}

TEST (StackEventProfilerTest, TheUserInterfaceThreadIsNotTheRenderingThread)
{
    InstalledProfiler<RecordingStackProfiler> profiler (false);
    profiler->setUserInterfaceThreadId (getCurrentJuceThreadId());
    const ProfilerScope ignored ("Ignored");
    EXPECT_TRUE (profiler->getCalls().empty());
}

TEST (StackEventProfilerTest, EachThreadClassCanBeLeftOut)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    profiler->setRecordOtherThreads (false);
    EXPECT_FALSE (profiler->isCurrentThreadRecorded());
    profiler->setUserInterfaceThreadId (getCurrentJuceThreadId());
    EXPECT_TRUE (profiler->isCurrentThreadRecorded());
    profiler->setRecordUserInterfaceThread (false);
    EXPECT_FALSE (profiler->isCurrentThreadRecorded());
    profiler->setRenderingThreadId (getCurrentJuceThreadId());
    EXPECT_TRUE (profiler->isCurrentThreadRecorded());
    profiler->setRecordRenderingThread (false);
    EXPECT_FALSE (profiler->isCurrentThreadRecorded());

    profiler->beginEvent ("Left out", 0);
    EXPECT_TRUE (profiler->getCalls().empty());
    EXPECT_EQ (profiler->getCurrentThreadStackDepth(), 0u);
}

TEST (StackEventProfilerTest, ThreadClassesAreRecordedAtFirst)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    EXPECT_TRUE (profiler->isRecordingRenderingThread());
    EXPECT_TRUE (profiler->isRecordingUserInterfaceThread());
    EXPECT_TRUE (profiler->isRecordingOtherThreads());
    EXPECT_EQ (profiler->getAddress(), "127.0.0.1");
}

TEST (StackEventProfilerTest, AScopeEndedAfterItsThreadClassWasLeftOutStaysOnTheStack)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    {
        const ProfilerScope scope ("Begun");
        profiler->setRecordOtherThreads (false);
    }
    EXPECT_EQ (profiler->getCalls(), (Calls { "make Begun 0" }));
    EXPECT_EQ (profiler->getCurrentThreadStackDepth(), 1u);
}

TEST (StackEventProfilerTest, TheRenderingThreadIsNamedAtItsFirstFrame)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    profiler->beginFrame();
    profiler->setRenderingThreadId (getCurrentJuceThreadId());
    profiler->beginFrame();
    profiler->beginFrame();
    EXPECT_EQ (profiler->getCalls(), (Calls { "begin frame", "thread Kelvo Render", "begin frame", "begin frame" }));
    EXPECT_EQ (profiler->getNamedThreadIds(), (std::vector<uint32_t> { (uint32_t) ::gettid() }));
}

// Once per process: the test runs in a process of its own.
TEST (StackEventProfilerTest, TheUserInterfaceThreadIsNamedOncePerProcess)
{
    GTEST_FLAG_SET (death_test_style, "threadsafe");
    const auto check = []
    {
        bool ok = true;
        for (int i = 0; i < 2; ++i)
        {
            InstalledProfiler<RecordingStackProfiler> profiler;
            profiler->setUserInterfaceThreadId (getCurrentJuceThreadId());
            const ProfilerScope first ("First");
            const ProfilerScope second ("Second");
            const Calls expected = i == 0 ? Calls { "thread Kelvo Main Thread", "make First 0", "make Second 0" }
                                          : Calls { "make First 0", "make Second 0" };
            ok = ok && profiler->getCalls() == expected;
        }
        std::_Exit (ok ? 0 : 1);
    };
    EXPECT_EXIT (check(), ::testing::ExitedWithCode (0), "");
}

TEST (StackEventProfilerTest, AJuceThreadIsNamedAfterItselfAtItsFirstEvent)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    uint32_t threadId = 0;
    runOnJuceThread ("Decoder", [&]
    {
        threadId = Profiler::getCurrentSystemThreadId();
        const ProfilerScope first ("First");
        const ProfilerScope second ("Second");
    });
    EXPECT_EQ (profiler->getCalls(), (Calls { "thread Decoder", "make First 0", "make Second 0", "finished Second at 2", "finished First at 1" }));
    EXPECT_EQ (profiler->getNamedThreadIds(), (std::vector<uint32_t> { threadId }));
}

TEST (StackEventProfilerTest, AThreadWithoutAJuceThreadIsNotNamed)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    runOnPlainThread ([] { const ProfilerScope scope ("Plain"); });
    EXPECT_EQ (profiler->getCalls(), (Calls { "make Plain 0", "finished Plain at 1" }));
}

TEST (StackEventProfilerTest, EachThreadHasAStackOfItsOwn)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    profiler->beginEvent ("Here", 0);
    runOnPlainThread ([&]
    {
        profiler->endEvent();
        profiler->beginEvent ("There", 0);
    });
    EXPECT_EQ (profiler->getCurrentThreadStackDepth(), 1u);
    profiler->endEvent();
    EXPECT_EQ (profiler->getCalls(), (Calls { "make Here 0", "make There 0", "finished Here at 1" }));
}

TEST (StackEventProfilerTest, ThreadsProfileAtTheSameTime)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    constexpr int numThreads = 4, numScopes = 1000;
    std::vector<std::thread> threads;
    for (int t = 0; t < numThreads; ++t)
        threads.emplace_back ([]
        {
            for (int i = 0; i < numScopes; ++i)
            {
                const ProfilerScope outer ("Outer");
                const ProfilerScope inner ("Inner");
            }
        });
    for (auto& thread : threads)
        thread.join();

    int numFinishedInner = 0, numFinishedOuter = 0;
    for (const auto& call : profiler->getCalls())
    {
        numFinishedInner += call == "finished Inner at 2";
        numFinishedOuter += call == "finished Outer at 1";
    }
    EXPECT_EQ (numFinishedInner, numThreads * numScopes);
    EXPECT_EQ (numFinishedOuter, numThreads * numScopes);
}
