#include "../Support/LogTestSupport.h"
#include "../Support/ScratchDirectory.h"
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/LoggerExecutionContextView.h>
#include <Tov/Standard/LoggerThread.h>
#include <Tov/Standard/Program.h>
#include <gtest/gtest.h>
#include <atomic>
#include <thread>

using namespace tov;
using namespace tov::test;

namespace
{

struct LoggerThreadTest : public ::testing::Test
{
    ScratchDirectory scratch;
    const juce::File directory = scratch.getFile();
};

double zeroClock() { return 0.0; }

} // namespace

TEST_F (LoggerThreadTest, IsNamedLogger)
{
    LoggerThread logger;
    EXPECT_EQ (logger.getThreadName(), "Logger");
}

TEST_F (LoggerThreadTest, QueueingTouchesNoFileTheThreadWritesThem)
{
    LoggerThread logger;   // not started: only drain writes
    const auto file = directory.getChildFile ("a.txt");

    logger.enqueue (file, LoggerThread::printCommand, "hello");
    logger.enqueue (file, LoggerThread::printCommand, " world\r\n");
    EXPECT_FALSE (file.exists());

    EXPECT_TRUE (logger.drain());
    EXPECT_TRUE (file.existsAsFile());
    EXPECT_EQ (file.getSize(), 0) << "printed text waits in the stream's buffer";

    logger.enqueue (file, LoggerThread::flushCommand);
    EXPECT_TRUE (logger.drain());
    EXPECT_EQ (readBytes (file), "hello world\r\n");
    EXPECT_FALSE (logger.drain());
}

TEST_F (LoggerThreadTest, StreamsBufferThirtyTwoKilobytes)
{
    LoggerThread logger;
    const auto file = directory.getChildFile ("big.txt");
    logger.enqueue (file, LoggerThread::printCommand, juce::String::repeatedString ("x", 32767));
    logger.drain();
    EXPECT_EQ (file.getSize(), 0);

    // The byte that fills the buffer pushes out what it held.
    logger.enqueue (file, LoggerThread::printCommand, "y");
    logger.drain();
    EXPECT_EQ (file.getSize(), 32767);
    EXPECT_EQ (LoggerThread::streamBufferSize, 32768u);
}

TEST_F (LoggerThreadTest, CloseFlushesAndForgetsTheStream)
{
    LoggerThread logger;
    const auto file = directory.getChildFile ("closed.txt");
    logger.enqueue (file, LoggerThread::printCommand, "last line");
    logger.drain();
    EXPECT_FALSE (logger.deleteFileUnlessOpen (file));
    EXPECT_TRUE (file.existsAsFile()) << "an open file is never deleted";

    logger.enqueue (file, LoggerThread::closeCommand);
    logger.drain();
    EXPECT_EQ (readBytes (file), "last line");
    EXPECT_TRUE (logger.deleteFileUnlessOpen (file));
    EXPECT_FALSE (file.exists());
}

TEST_F (LoggerThreadTest, FilesAreWrittenInTheOrderOfTheirEntries)
{
    LoggerThread logger;
    const auto a = directory.getChildFile ("a.txt");
    const auto b = directory.getChildFile ("b.txt");
    for (int i = 0; i < 3; ++i)
    {
        logger.enqueue (a, LoggerThread::printCommand, "a" + juce::String (i));
        logger.enqueue (b, LoggerThread::printCommand, "b" + juce::String (i));
    }
    logger.enqueue (a, LoggerThread::closeCommand);
    logger.enqueue (b, LoggerThread::closeCommand);
    logger.drain();
    EXPECT_EQ (readBytes (a), "a0a1a2");
    EXPECT_EQ (readBytes (b), "b0b1b2");
}

TEST_F (LoggerThreadTest, AFileThatCannotBeOpenedLosesItsLinesAndIsNotRetried)
{
    LoggerThread logger;
    const auto missingDirectory = directory.getChildFile ("missing");
    const auto file = missingDirectory.getChildFile ("lost.txt");
    logger.enqueue (file, LoggerThread::printCommand, "lost");
    logger.enqueue (file, LoggerThread::flushCommand);
    EXPECT_TRUE (logger.drain());
    EXPECT_FALSE (file.exists());

    // Even once it could be opened, the failed attempt stands.
    ASSERT_TRUE (missingDirectory.createDirectory());
    logger.enqueue (file, LoggerThread::printCommand, "still lost");
    logger.enqueue (file, LoggerThread::closeCommand);
    logger.enqueue (file, LoggerThread::flushCommand);
    logger.drain();
    EXPECT_FALSE (file.exists());
}

TEST_F (LoggerThreadTest, TheRunningThreadWritesAndClosesEverythingWhenStopped)
{
    LoggerThread logger;
    const auto file = directory.getChildFile ("run.txt");
    logger.startThread();
    logger.enqueue (file, LoggerThread::printCommand, "written by the thread");
    ASSERT_TRUE (logger.waitUntilDrained (5000));
    EXPECT_TRUE (file.existsAsFile());
    EXPECT_TRUE (logger.stopThread (2000));

    // Stopping flushed and closed the stream.
    EXPECT_EQ (readBytes (file), "written by the thread");
    EXPECT_TRUE (logger.deleteFileUnlessOpen (file));
}

TEST_F (LoggerThreadTest, DestroyingARunningLoggerStopsItFirst)
{
    const auto file = directory.getChildFile ("destroyed.txt");
    {
        LoggerThread logger;
        logger.startThread();
        logger.enqueue (file, LoggerThread::printCommand, "kept");
        ASSERT_TRUE (logger.waitUntilDrained (5000));
    }
    EXPECT_EQ (readBytes (file), "kept");
}

TEST_F (LoggerThreadTest, WaitUntilDrainedTimesOutWhileNobodyDrains)
{
    LoggerThread logger;
    EXPECT_TRUE (logger.waitUntilDrained (0));
    logger.enqueue (directory.getChildFile ("x.txt"), LoggerThread::printCommand, "x");
    EXPECT_FALSE (logger.waitUntilDrained (50));
    logger.drain();
    EXPECT_TRUE (logger.waitUntilDrained (0));
}

// Eight threads log through their own views for three seconds while another
// thread keeps rotating the logs to nothing: rotation removes the closed logs,
// and every open log keeps every line, in order.
TEST_F (LoggerThreadTest, EightThreadsKeepEveryLineInOrderWhileLogsRotate)
{
    constexpr int numThreads = 8;
    constexpr int numLines = 20000;
    constexpr double durationMilliseconds = 3000.0;

    // The test is about order and rotation, not about the disk: on a real disk
    // the flush of every line keeps the logger busy for a minute and more.
    ScopedHomeOnRamDisk ramDisk;
    const auto earliest = juce::Time::getCurrentTime();
    TestProgram program;
    ASSERT_TRUE (program.startProgram());

    // Closed logs of earlier runs, for the rotation to remove.
    const auto logs = program.getLogsDirectory (true);
    juce::Array<juce::File> oldLogs;
    for (int i = 0; i < 20; ++i)
    {
        oldLogs.add (logs.getChildFile ("Old " + juce::String (i) + ".txt"));
        ASSERT_TRUE (oldLogs.getLast().replaceWithText (juce::String::repeatedString ("old line\r\n", 100)));
    }

    std::vector<std::unique_ptr<ExecutionContext>> contexts;
    juce::Array<juce::File> files;
    for (int i = 0; i < numThreads; ++i)
    {
        contexts.push_back (std::make_unique<ExecutionContext>());
        auto* view = new LoggerExecutionContextView ("Stress " + juce::String (i));
        view->setMillisecondClock (&zeroClock);
        contexts.back()->addView (view);
        files.add (view->getLogFile());
    }

    // From here on every log of the test is open.
    program.waitForLogger();
    auto openLogs = files;
    openLogs.add (program.getLogFile ("Program", ".txt", true));

    std::atomic<bool> writing { true };
    std::atomic<int> numRotations { 0 };
    std::atomic<int> numOpenLogsDeleted { 0 };
    std::thread rotation ([&]
    {
        while (writing)
        {
            program.logMaxSize (0);
            ++numRotations;
            for (auto& log : openLogs)
                if (! log.existsAsFile())
                    ++numOpenLogsDeleted;
            juce::Thread::sleep (5);
        }
    });

    const auto writingStart = juce::Time::getMillisecondCounterHiRes();

    std::vector<std::thread> writers;
    for (int i = 0; i < numThreads; ++i)
        writers.emplace_back ([&, i]
        {
            auto& context = *contexts[(size_t) i];
            const auto start = juce::Time::getMillisecondCounterHiRes();
            context.enter ("Stress");
            for (int line = 0; line < numLines; ++line)
            {
                context.information ("thread " + juce::String (i) + " line " + juce::String (line));

                // Spread the lines over the whole duration, so that rotation runs all along.
                if (line % 500 == 499)
                {
                    const auto due = start + durationMilliseconds * (line + 1) / numLines;
                    const auto now = juce::Time::getMillisecondCounterHiRes();
                    if (due > now)
                        juce::Thread::sleep ((int) (due - now));
                }
            }
            context.leave();
        });

    for (auto& writer : writers)
        writer.join();
    const auto writingTime = juce::Time::getMillisecondCounterHiRes() - writingStart;
    writing = false;
    rotation.join();

    EXPECT_GE (writingTime, durationMilliseconds - 50.0);
    EXPECT_GT (numRotations.load(), 10);
    EXPECT_EQ (numOpenLogsDeleted.load(), 0);
    for (auto& old : oldLogs)
        EXPECT_FALSE (old.exists()) << old.getFileName();

    contexts.clear();
    program.waitForLogger (100000);
    const auto latest = juce::Time::getCurrentTime();

    for (int i = 0; i < numThreads; ++i)
    {
        std::string expected = expectedHelloBanner (program) + "<time>\tStress\r\n";
        for (int line = 0; line < numLines; ++line)
            expected += "<time>\t  Information: thread " + std::to_string (i) + " line " + std::to_string (line) + "\r\n";
        expected += "<time>\tDone Stress (0 ms)\r\n"
                    "<time>\t------------------------- bye ---------------------------------";

        std::string text;
        ASSERT_TRUE (files[i].existsAsFile()) << files[i].getFileName();
        ASSERT_TRUE (replaceTimeStamps (readBytes (files[i]), earliest, latest, text));
        EXPECT_TRUE (text == expected) << files[i].getFileName() << ": " << text.size() << " bytes, expected " << expected.size();
    }

    program.stopProgram();
}
