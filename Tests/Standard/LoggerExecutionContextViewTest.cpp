#include "../Support/LogTestSupport.h"
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/LoggerExecutionContextView.h>
#include <Tov/Standard/Program.h>
#include <gtest/gtest.h>
#include <thread>

using namespace tov;
using namespace tov::test;

namespace
{

struct LoggerExecutionContextViewTest : public ::testing::Test
{
    void SetUp() override
    {
        ManualClock::now = 0.0;
        earliest = juce::Time::getCurrentTime();
        ASSERT_TRUE (program.startProgram());
    }

    void TearDown() override
    {
        if (Program::isStillRunning())
            program.stopProgram();
    }

    /** A logger view on the manual clock, in its own context. */
    LoggerExecutionContextView* addLogger (ExecutionContext& context, const juce::String& name)
    {
        auto* view = new LoggerExecutionContextView (name);
        view->setMillisecondClock (&ManualClock::get);
        context.addView (view);
        return view;
    }

    std::string readLog (const juce::File& file)
    {
        program.waitForLogger();
        std::string text;
        EXPECT_TRUE (replaceTimeStamps (readBytes (file), earliest, juce::Time::getCurrentTime(), text));
        return text;
    }

    TestProgram program;
    juce::Time earliest;
};

} // namespace

TEST_F (LoggerExecutionContextViewTest, WritesBannersStampsIndentationAndNoFinalLineEnd)
{
    juce::File file;
    {
        ExecutionContext context;
        file = addLogger (context, "Session")->getLogFile();
        context.enter ("Document");
        context.enter ("Loading");
        context.information ("file a");
        context.warning ("slow disk");
        ManualClock::now = 12.5;
        context.leave();
        context.enter ("Empty");
        ManualClock::now = 20.0;
        context.leave();
        ManualClock::now = 30.0;
        context.leave();
        context.error ("broken");
    }

    EXPECT_EQ (readLog (file),
               expectedHelloBanner (program)
               + "<time>\tDocument\r\n"
                 "<time>\t  Loading\r\n"
                 "<time>\t    Information: file a\r\n"
                 "<time>\t    Warning: slow disk\r\n"
                 "<time>\t  Done Loading (12.5 ms)\r\n"
                 "<time>\t  Empty (7.5 ms)\r\n"
                 "<time>\tDone Document (30 ms)\r\n"
                 "<time>\tError: broken\r\n"
                 "<time>\t------------------------- bye ---------------------------------");
}

TEST_F (LoggerExecutionContextViewTest, AFileWithoutBlocksHoldsBannersAndStampedLines)
{
    juce::File file;
    {
        ExecutionContext context;
        file = addLogger (context, "Plain")->getLogFile();
        context.information ("one");
    }

    // Every byte but the digits of the stamps, which replaceTimeStamps checks for form and range.
    program.waitForLogger();
    const auto bytes = readBytes (file);
    std::string text;
    ASSERT_TRUE (replaceTimeStamps (bytes, earliest, juce::Time::getCurrentTime(), text));
    EXPECT_EQ (text, expectedHelloBanner (program)
                         + "<time>\tInformation: one\r\n"
                           "<time>\t------------------------- bye ---------------------------------");
    EXPECT_EQ (bytes.size(), text.size() + 6 * (19 - 6));
    EXPECT_EQ (bytes.substr (bytes.size() - 3), "---");
}

TEST_F (LoggerExecutionContextViewTest, TheFileIsNamedAfterProgramBranchNameAndStartTime)
{
    ExecutionContext context;
    auto* view = addLogger (context, "Session");
    EXPECT_EQ (view->getLogFile(), program.getLogFile ("Session", ".txt", true));
    EXPECT_EQ (view->getLogFile().getParentDirectory(), program.getLogsDirectory (true));
    EXPECT_TRUE (view->getLogFile().getFileName().startsWith (program.getProgramName() + " main Session "));
    EXPECT_TRUE (view->getLogFile().getFileName().endsWith (".txt"));
}

TEST_F (LoggerExecutionContextViewTest, AnEmptyUnnamedBlockAndAnUnnamedBlockWithLines)
{
    juce::File file;
    {
        ExecutionContext context;
        file = addLogger (context, "Unnamed")->getLogFile();
        context.enter ("");
        ManualClock::now = 1.0;
        context.leave();
        context.enter ("");
        context.information ("inside");
        ManualClock::now = 3.0;
        context.leave();
    }
    EXPECT_EQ (readLog (file),
               expectedHelloBanner (program)
               + "<time>\t (1 ms)\r\n"
                 "<time>\t\r\n"
                 "<time>\t  Information: inside\r\n"
                 "<time>\tDone (2 ms)\r\n"
                 "<time>\t------------------------- bye ---------------------------------");
}

TEST_F (LoggerExecutionContextViewTest, LeaveAtDepthZeroPrintsNothing)
{
    juce::File file;
    {
        ExecutionContext context;
        file = addLogger (context, "Unbalanced")->getLogFile();
        context.leave();
        context.information ("x");
        context.leave();
    }
    EXPECT_EQ (readLog (file),
               expectedHelloBanner (program)
               + "<time>\tInformation: x\r\n"
                 "<time>\t------------------------- bye ---------------------------------");
}

TEST_F (LoggerExecutionContextViewTest, AMultiLineMessageGetsCrLfAndOnlyItsFirstLineIndented)
{
    juce::File file;
    {
        ExecutionContext context;
        file = addLogger (context, "MultiLine")->getLogFile();
        context.enter ("Block");
        context.error ("first\nsecond\nthird");
        ManualClock::now = 1.0;
        context.leave();
    }
    EXPECT_EQ (readLog (file),
               expectedHelloBanner (program)
               + "<time>\tBlock\r\n"
                 "<time>\t  Error: first\r\n"
                 "second\r\n"
                 "third\r\n"
                 "<time>\tDone Block (1 ms)\r\n"
                 "<time>\t------------------------- bye ---------------------------------");
}

TEST_F (LoggerExecutionContextViewTest, StatusAndQuestionsReachTheFile)
{
    juce::File file;
    {
        ExecutionContext context;
        file = addLogger (context, "Status")->getLogFile();
        context.status (true, "saved");
        context.status (false, "");
        context.status (SuccessStatus (SuccessStateEnum::error, ""));
        context.status (SuccessStatus (SuccessStateEnum::success, "done"));
        EXPECT_FALSE (context.askYesNo ("Save?"));
    }
    EXPECT_EQ (readLog (file),
               expectedHelloBanner (program)
               + "<time>\tWarning: saved\r\n"
                 "<time>\tError: \r\n"
                 "<time>\tInformation: done\r\n"
                 "<time>\t------------------------- bye ---------------------------------");
}

TEST_F (LoggerExecutionContextViewTest, DestructionLeavesOpenBlocksWithTheirTimings)
{
    juce::File file;
    {
        ExecutionContext context;
        file = addLogger (context, "Open")->getLogFile();
        context.enter ("Outer");
        context.enter ("Inner");
        context.information ("x");
        ManualClock::now = 8.0;
    }
    EXPECT_EQ (readLog (file),
               expectedHelloBanner (program)
               + "<time>\tOuter\r\n"
                 "<time>\t  Inner\r\n"
                 "<time>\t    Information: x\r\n"
                 "<time>\t  Done Inner (8 ms)\r\n"
                 "<time>\tDone Outer (8 ms)\r\n"
                 "<time>\t------------------------- bye ---------------------------------");
}

TEST_F (LoggerExecutionContextViewTest, TwoServicesLoggingAtOnceWriteTwoFilesNamedAfterThem)
{
    const int numLines = 500;
    juce::File audioFile, videoFile;
    {
        ExecutionContext audio, video;
        audioFile = addLogger (audio, "Audio")->getLogFile();
        videoFile = addLogger (video, "Video")->getLogFile();

        auto run = [numLines] (ExecutionContext& context, juce::String what)
        {
            context.enter (what);
            for (int i = 0; i < numLines; ++i)
                context.information (what + " " + juce::String (i));
            context.leave();
        };
        std::thread audioThread (run, std::ref (audio), juce::String ("audio"));
        std::thread videoThread (run, std::ref (video), juce::String ("video"));
        audioThread.join();
        videoThread.join();
    }

    EXPECT_NE (audioFile, videoFile);
    EXPECT_EQ (audioFile.getFileName(), program.getLogFile ("Audio", ".txt", true).getFileName());
    EXPECT_EQ (videoFile.getFileName(), program.getLogFile ("Video", ".txt", true).getFileName());

    for (auto [file, what] : { std::pair (audioFile, std::string ("audio")), std::pair (videoFile, std::string ("video")) })
    {
        std::string expected = expectedHelloBanner (program) + "<time>\t" + what + "\r\n";
        for (int i = 0; i < numLines; ++i)
            expected += "<time>\t  Information: " + what + " " + std::to_string (i) + "\r\n";
        expected += "<time>\tDone " + what + " (0 ms)\r\n"
                    "<time>\t------------------------- bye ---------------------------------";
        EXPECT_EQ (readLog (file), expected);
    }
}

TEST_F (LoggerExecutionContextViewTest, ASecondViewOfTheSameNameDeletesTheFirstOnesFile)
{
    juce::File first, second;
    {
        ExecutionContext context;
        first = addLogger (context, "Same")->getLogFile();
        context.information ("from the first view");
    }
    program.waitForLogger();
    ASSERT_TRUE (first.existsAsFile());
    {
        ExecutionContext context;
        second = addLogger (context, "Same")->getLogFile();

        // Deleted at construction, on the constructing thread.
        program.waitForLogger();
        context.information ("from the second view");
    }
    EXPECT_EQ (first, second);
    EXPECT_EQ (readLog (second),
               expectedHelloBanner (program)
               + "<time>\tInformation: from the second view\r\n"
                 "<time>\t------------------------- bye ---------------------------------");
}

TEST_F (LoggerExecutionContextViewTest, AnEarlierFileOfTheSameNameIsDeletedAtConstruction)
{
    const auto file = program.getLogFile ("Stale", ".txt", true);
    ASSERT_TRUE (file.replaceWithText ("stale content that is longer than a banner line"));
    {
        ExecutionContext context;
        addLogger (context, "Stale");
        EXPECT_FALSE (file.loadFileAsString().startsWith ("stale"));
    }
    EXPECT_EQ (readLog (file),
               expectedHelloBanner (program)
               + "<time>\t------------------------- bye ---------------------------------");
}

TEST_F (LoggerExecutionContextViewTest, ReportingAfterTheProgramStoppedIsDropped)
{
    ExecutionContext context;
    const auto file = addLogger (context, "Late")->getLogFile();
    context.information ("before");
    program.stopProgram();
    ASSERT_FALSE (Program::isStillRunning());

    context.information ("after");
    context.enter ("Block");
    context.leave();
    context.deleteAllViews();

    std::string text;
    EXPECT_TRUE (replaceTimeStamps (readBytes (file), earliest, juce::Time::getCurrentTime(), text));
    EXPECT_EQ (text, expectedHelloBanner (program) + "<time>\tInformation: before");
}

TEST_F (LoggerExecutionContextViewTest, TheProgramsOwnLogHoldsTheProgramBlock)
{
    const auto file = program.getLogFile ("Program", ".txt", true);
    program.getProgramExecutionContext().information ("running");
    ExecutionContext::get().warning ("through get");
    program.stopProgram();

    std::string text;
    ASSERT_TRUE (replaceTimeStamps (readBytes (file), earliest, juce::Time::getCurrentTime(), text));

    // The program's view runs on the real clock: only the timings' digits are free.
    EXPECT_EQ (replaceTimings (text),
               expectedHelloBanner (program) + expectedStartLines (program)
               + "<time>\t  Information: running\r\n"
                 "<time>\t  Warning: through get\r\n"
                 "<time>\tDone Program (<ms> ms)\r\n"
                 "<time>\t------------------------- bye ---------------------------------");
}
