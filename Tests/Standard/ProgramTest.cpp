#include "../Support/LogTestSupport.h"
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/LoggerExecutionContextView.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/TimeText.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{

class RefusingProgram : public TestProgram
{
protected:
    bool programStarted() override  { return false; }
    int programStopped() override   { return 7; }
};

juce::File writeLog (const juce::File& directory, const juce::String& name, int size, juce::Time modified)
{
    auto file = directory.getChildFile (name);
    file.replaceWithText (juce::String::repeatedString ("x", size));
    file.setLastModificationTime (modified);
    return file;
}

} // namespace

TEST (ProgramTest, RunsFromStartToStop)
{
    TestProgram program;
    EXPECT_TRUE (Program::isStillRunning());
    EXPECT_EQ (&Program::get(), &program);
    EXPECT_EQ (program.getLoggerThread(), nullptr);

    const auto before = juce::Time::getCurrentTime();
    ASSERT_TRUE (program.startProgram());
    EXPECT_GE (program.getStartTime(), before);
    ASSERT_NE (program.getLoggerThread(), nullptr);
    EXPECT_EQ (program.getLoggerThread()->getThreadName(), "Logger");
    EXPECT_TRUE (program.getLoggerThread()->isThreadRunning());
    EXPECT_FALSE (program.isCurrentlyStopping());
    EXPECT_EQ (program.getProgramExecutionContext().getNumViews(), 1u);

    EXPECT_EQ (program.stopProgram(), 0);
    EXPECT_TRUE (program.isCurrentlyStopping());
    EXPECT_FALSE (Program::isStillRunning());
    EXPECT_EQ (program.getLoggerThread(), nullptr);
    EXPECT_EQ (program.getProgramExecutionContext().getNumViews(), 0u);
}

TEST (ProgramTest, TheApplicationDecidesStartAndExitCode)
{
    RefusingProgram program;
    EXPECT_FALSE (program.startProgram());
    EXPECT_EQ (program.stopProgram(), 7);
}

TEST (ProgramTest, DestructionWithoutStopEndsTheProgram)
{
    {
        TestProgram program;
        ASSERT_TRUE (program.startProgram());
    }
    EXPECT_FALSE (Program::isStillRunning());
}

TEST (ProgramTest, VersionNumbersAndNames)
{
    TestProgram program;
    EXPECT_EQ (program.getProgramName(), TestProgram::getCurrentTestName());
    EXPECT_EQ (program.getSoftwareVersion().getBranchName().get(), "main");
    EXPECT_EQ (program.getSoftwareVersion().versionNumberToString ("."), "1.2.3");
    EXPECT_EQ (program.getSoftwareVersion().versionNumberToString ("_"), "1_2_3");
    EXPECT_EQ (program.getSoftwareVersion().getCommitHash().get(), "abc123");
}

TEST (ProgramTest, IsAReflectedClass)
{
    Program program ("Plain", "main", 1, 0, 0, {});
    EXPECT_EQ (program.getClassName(), "Program");
}

TEST (ProgramTest, DataDirectoriesFollowTheUserAndTheMachine)
{
    TestProgram program;
    const auto name = program.getProgramName();
    const auto home = juce::File (juce::SystemStats::getEnvironmentVariable ("HOME", {}));
    const auto programData = juce::SystemStats::getEnvironmentVariable ("ProgramData", {});

    EXPECT_EQ (program.getProgramDataDirectory ({}, true), home.getChildFile (".config").getChildFile (name));
    EXPECT_TRUE (program.getProgramDataDirectory ({}, true).isDirectory());
    EXPECT_EQ (program.getLogsDirectory (true), home.getChildFile (".config").getChildFile (name).getChildFile ("logs"));
    EXPECT_TRUE (program.getLogsDirectory (true).isDirectory());

    if (juce::File::isAbsolutePath (programData))
    {
        const auto machineLogs = juce::File (programData).getChildFile ("KelvoTech").getChildFile (name).getChildFile ("logs");
        EXPECT_EQ (program.getLogsDirectory (false), machineLogs);
        EXPECT_TRUE (machineLogs.isDirectory());
        machineLogs.getParentDirectory().deleteRecursively();
    }
}

TEST (ProgramTest, AKnownDataDirectoryIsNotCreatedAgain)
{
    TestProgram program;
    const auto logs = program.getLogsDirectory (true);
    ASSERT_TRUE (logs.isDirectory());
    ASSERT_TRUE (logs.deleteRecursively());
    EXPECT_EQ (program.getLogsDirectory (true), logs);
    EXPECT_FALSE (logs.exists());
}

TEST (ProgramTest, LogFileNamesJoinProgramBranchNameAndStartTime)
{
    TestProgram program;
    ASSERT_TRUE (program.startProgram());
    const auto prefix = program.getProgramName() + " main Session";
    const auto logs = program.getLogsDirectory (true);
    EXPECT_EQ (program.getLogFile ("Session", ".txt", false), logs.getChildFile (prefix + ".txt"));
    EXPECT_EQ (program.getLogFile ("Session", ".txt", true),
               logs.getChildFile (prefix + " " + TimeText::toFileNameString (program.getStartTime()) + ".txt"));
    program.stopProgram();
}

TEST (ProgramTest, TimeTextsOfLogs)
{
    const juce::Time time (2026, 2, 7, 9, 5, 2, 0, true);
    EXPECT_EQ (TimeText::toString (time), "2026/03/07 09:05:02");
    EXPECT_EQ (TimeText::toFileNameString (time), "2026-3-7_9-5-2");
    EXPECT_EQ (TimeText::toString (juce::Time()), "N/A");
    EXPECT_EQ (TimeText::toString (juce::Time (2025, 11, 31, 23, 59, 59, 999, true)), "2025/12/31 23:59:59");
}

TEST (ProgramTest, LogHandOffsDoNothingWithoutALoggerThread)
{
    TestProgram program;   // not started
    const auto logs = program.getLogsDirectory (true);
    const auto file = logs.getChildFile ("quiet.txt");
    program.logPrint (file, "text");
    program.logFlush (file);
    program.logClose (file);
    EXPECT_FALSE (file.exists());

    const auto old = writeLog (logs, "old.txt", 10, juce::Time::getCurrentTime());
    program.logMaxSize (0);
    EXPECT_TRUE (old.exists());
}

TEST (ProgramTest, LogMaxSizeZeroDeletesEveryLogButTheOpenOnes)
{
    TestProgram program;
    ASSERT_TRUE (program.startProgram());
    const auto logs = program.getLogsDirectory (true);
    const auto old = juce::Time::getCurrentTime() - juce::RelativeTime::hours (1);
    const auto a = writeLog (logs, "a.txt", 100, old);
    const auto b = writeLog (logs, "b.txt", 100, old);
    const auto other = writeLog (logs, "keep.dat", 100, old);
    const auto nested = logs.getChildFile ("sub").getChildFile ("nested.txt");
    ASSERT_TRUE (nested.getParentDirectory().createDirectory());
    ASSERT_TRUE (nested.replaceWithText ("nested"));

    auto context = std::make_unique<ExecutionContext>();
    auto* view = new LoggerExecutionContextView ("Open");
    context->addView (view);
    const auto openLog = view->getLogFile();
    const auto programLog = program.getLogFile ("Program", ".txt", true);
    program.waitForLogger();

    program.logMaxSize (0);
    EXPECT_FALSE (a.exists());
    EXPECT_FALSE (b.exists());
    EXPECT_TRUE (openLog.existsAsFile());
    EXPECT_TRUE (programLog.existsAsFile());
    EXPECT_TRUE (other.existsAsFile()) << "only *.txt files are logs";
    EXPECT_TRUE (nested.existsAsFile()) << "the listing is not recursive";

    // Once closed, a log goes like any other.
    context.reset();
    program.waitForLogger();
    program.logMaxSize (0);
    EXPECT_FALSE (openLog.exists());
    EXPECT_TRUE (programLog.existsAsFile());
    program.stopProgram();
}

TEST (ProgramTest, LogMaxSizeDeletesTheOldestFirstUntilTheTotalFits)
{
    TestProgram program;
    ASSERT_TRUE (program.startProgram());
    const auto logs = program.getLogsDirectory (true);
    const auto now = juce::Time::getCurrentTime();
    const auto newest = writeLog (logs, "newest.txt", 300, now - juce::RelativeTime::minutes (1));
    const auto oldest = writeLog (logs, "oldest.txt", 100, now - juce::RelativeTime::minutes (3));
    const auto middle = writeLog (logs, "middle.txt", 200, now - juce::RelativeTime::minutes (2));

    // The program's own log counts in the total, but is open and stays.
    program.waitForLogger();
    const auto programLog = program.getLogFile ("Program", ".txt", true);
    const auto programLogSize = (uint64_t) programLog.getSize();
    ASSERT_GT (programLogSize, 0u);

    program.logMaxSize (600 + programLogSize);
    EXPECT_TRUE (oldest.exists() && middle.exists() && newest.exists()) << "nothing to do at the limit";

    program.logMaxSize (350 + programLogSize);
    EXPECT_FALSE (oldest.exists());
    EXPECT_FALSE (middle.exists());
    EXPECT_TRUE (newest.exists());
    EXPECT_TRUE (programLog.existsAsFile());

    // Only open logs left above the limit: the walk simply ends.
    program.logMaxSize (0);
    EXPECT_FALSE (newest.exists());
    EXPECT_TRUE (programLog.existsAsFile());
    program.stopProgram();
}
