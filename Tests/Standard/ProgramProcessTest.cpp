// Tests that start threads or processes.
#include "../Support/LogTestSupport.h"
#include "../Support/ScratchDirectory.h"
#include "../Support/TestProcess.h"
#include <Tov/Standard/Program.h>
#include <Tov/Standard/TimeText.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

using namespace tov;
using namespace tov::test;

namespace
{

/** A HOME and a ProgramData of their own, removed afterwards, and a copy of the test
    application named after the test: the tests look for other processes by executable
    name, and tests run side by side must not see each other's. */
class ProgramProcessTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE (root.getChildFile ("home").createDirectory());
        ASSERT_TRUE (root.getChildFile ("data").createDirectory());
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        executableName = "ProgramTestApplication-" + juce::String (info->name());
        application = root.getChildFile (executableName);
        ASSERT_TRUE (juce::File (TOV_PROGRAM_TEST_APPLICATION_PATH).copyFileTo (application));
        ASSERT_TRUE (application.setExecutePermission (true));
        environment = { { "HOME", root.getChildFile ("home").getFullPathName() },
                        { "ProgramData", root.getChildFile ("data").getFullPathName() },
                        { "TZ", "UTC" }, { "DISPLAY", "" } };
    }

    std::unique_ptr<TestProcess> start (juce::StringArray arguments)
    {
        arguments.insert (0, application.getFullPathName());
        auto process = std::make_unique<TestProcess> (arguments, environment);
        EXPECT_TRUE (process->isStarted());
        return process;
    }

    ScratchDirectory scratch;
    const juce::File root = scratch.getFile();
    juce::File application;
    juce::String executableName;
    std::map<juce::String, juce::String> environment;
};

/** Runs a function on a juce::Thread and waits for it. */
class FunctionThread : public juce::Thread
{
public:
    explicit FunctionThread (std::function<void()> function) : Thread ("Test"), function (std::move (function)) {}
    void run() override   { function(); }

private:
    std::function<void()> function;
};

} // namespace

#ifdef TOV_PROGRAM_EXAMPLE_PATH
TEST_F (ProgramProcessTest, TheExampleWritesItsLogAndConfigurationAndStops)
{
    const auto before = juce::Time::getCurrentTime();
    TestProcess example ({ TOV_PROGRAM_EXAMPLE_PATH }, environment);
    ASSERT_EQ (example.waitForExit (20000), 0) << example.getOutput();
    const auto after = juce::Time::getCurrentTime();

    const auto user = root.getChildFile ("home").getChildFile (".config").getChildFile ("ProgramExample");
    const auto configuration = user.getChildFile ("configurations").getChildFile ("Settings_1_0_0.configuration");
    EXPECT_EQ (configuration.loadFileAsString(), "{greeting = \"Hello\", numRuns = 1}\n");
    const auto machine = root.getChildFile ("data").getChildFile ("KelvoTech").getChildFile ("ProgramExample");
    EXPECT_TRUE (machine.isDirectory());

    const auto logs = user.getChildFile ("logs").findChildFiles (juce::File::findFiles, false, "ProgramExample main Program *.txt");
    ASSERT_EQ (logs.size(), 1);
    EXPECT_EQ (example.getOutput(), "Log: " + logs[0].getFullPathName().toStdString() + "\n");

    std::string text;
    ASSERT_TRUE (replaceTimeStamps (readBytes (logs[0]), before, after, text));
    const auto executableDirectory = juce::File (TOV_PROGRAM_EXAMPLE_PATH).getParentDirectory();
    const std::string launched = text.substr (text.find ("launched at ") + 12, 19);
    EXPECT_EQ (logs[0].getFileName().toStdString(), "ProgramExample main Program "
               + TimeText::toFileNameString (juce::Time (std::stoi (launched.substr (0, 4)), std::stoi (launched.substr (5, 2)) - 1,
                                                         std::stoi (launched.substr (8, 2)), std::stoi (launched.substr (11, 2)),
                                                         std::stoi (launched.substr (14, 2)), std::stoi (launched.substr (17, 2)))).toStdString()
               + ".txt");
    EXPECT_EQ (replaceTimings (text),
               "<time>\t-------------------------- hello ------------------------------\r\n"
               "<time>\tProgram: ProgramExample, launched at " + launched + "\r\n"
               "<time>\tBranch: main version: 1.0.0.example\r\n"
               "<time>\t---------------------------------------------------------------\r\n"
               "<time>\tLoad Libraries (<ms> ms)\r\n"
               "<time>\tProgram\r\n"
               "<time>\t  Information: Command Line: \r\n"
               "<time>\t  Information: Program directory: " + executableDirectory.getFullPathName().toStdString() + "\r\n"
               "<time>\t  Information: Resources directory: " + executableDirectory.getParentDirectory().getFullPathName().toStdString() + "\r\n"
               "<time>\t  Information: Data directory: " + user.getFullPathName().toStdString() + "\r\n"
               "<time>\t  Loading Settings Configuration\r\n"
               "<time>\t    Information: No existing Settings_1_0_0.configuration file\r\n"
               "<time>\t  Done Loading Settings Configuration (<ms> ms)\r\n"
               "<time>\t  Information: Hello, run 1\r\n"
               "<time>\t  Information: Machine-wide data directory: " + machine.getFullPathName().toStdString() + "\r\n"
               "<time>\t  Information: Settings configuration saved\r\n"
               "<time>\tDone Program (<ms> ms)\r\n"
               "<time>\t------------------------- bye ---------------------------------");

    // A second run upgrades nothing and counts on.
    TestProcess second ({ TOV_PROGRAM_EXAMPLE_PATH }, environment);
    ASSERT_EQ (second.waitForExit (20000), 0) << second.getOutput();
    EXPECT_EQ (configuration.loadFileAsString(), "{greeting = \"Hello\", numRuns = 2}\n");
}
#endif

TEST_F (ProgramProcessTest, ASecondInstanceSeesTheFirst)
{
    auto first = start ({ "--hold" });
    ASSERT_TRUE (first->waitForLine ("started", 20000)) << first->getOutput();

    auto second = start ({});
    ASSERT_EQ (second->waitForExit (20000), 0) << second->getOutput();
    EXPECT_EQ (second->getOutput(), "started\nothers: " + std::to_string (first->getProcessId()) + "\nstopped\n");

    EXPECT_EQ (Program::getCommandLineFromProcessId ((unsigned long) first->getProcessId()),
               application.getFullPathName() + " --hold");
    const auto seen = Program::getAlreadyRunningProcessInstances (executableName);
    EXPECT_EQ (seen, std::set<unsigned long> { (unsigned long) first->getProcessId() });

    first->closeInput();
    EXPECT_EQ (first->waitForExit (20000), 0);
    EXPECT_EQ (first->getOutput(), "started\nothers: \nstopped\n");
}

// JUCE 7.0.5 on Linux has no broadcast between processes: the second instance
// finds the first through JUCE's lock and quits, but the first is never told.
TEST_F (ProgramProcessTest, ASecondInstanceQuitsWhereOnlyOneIsAllowed)
{
    auto first = start ({ "--hold", "--single" });
    ASSERT_TRUE (first->waitForLine ("started", 20000)) << first->getOutput();

    auto second = start ({ "--single", "--from-second" });
    EXPECT_EQ (second->waitForExit (20000), 0);
    EXPECT_EQ (second->getOutput(), "stopped\n") << "the second never started its program";

    first->closeInput();
    EXPECT_EQ (first->waitForExit (20000), 0);
    EXPECT_EQ (first->getOutput(), "started\nothers: \nstopped\n") << "anotherInstanceStarted is not delivered";
}

TEST_F (ProgramProcessTest, AProgramThatRefusesToStartExitsWith255)
{
    auto process = start ({ "--refuse" });
    EXPECT_EQ (process->waitForExit (20000), 255);
    EXPECT_EQ (process->getOutput(), "stopped\n");
}

TEST_F (ProgramProcessTest, KillAllInstancesKillsThem)
{
    auto first = start ({ "--hold" });
    ASSERT_TRUE (first->waitForLine ("started", 20000));
    auto ids = Program::getAlreadyRunningProcessInstances (executableName);
    ASSERT_EQ (ids.size(), 1u);
    EXPECT_TRUE (Program::killAllInstances (ids));
    EXPECT_TRUE (ids.empty());
    EXPECT_EQ (first->waitForExit (20000), -1) << "killed by a signal";
}

TEST (ProgramThreadTest, PowerSaveModeWaitsAtLeast990Milliseconds)
{
    Program::powerSaveMode = true;
    double shortWait = 0, longWait = 0;
    FunctionThread thread ([&]
    {
        auto start = juce::Time::getMillisecondCounterHiRes();
        Program::letCurrentThreadWaitAccordingToPowerSaveMode (1);
        shortWait = juce::Time::getMillisecondCounterHiRes() - start;
        start = juce::Time::getMillisecondCounterHiRes();
        Program::letCurrentThreadWaitAccordingToPowerSaveMode (2000);
        longWait = juce::Time::getMillisecondCounterHiRes() - start;
    });
    thread.startThread();
    EXPECT_TRUE (thread.waitForThreadToExit (20000));
    Program::powerSaveMode = false;
    EXPECT_GE (shortWait, 985.0);
    EXPECT_LT (shortWait, 1900.0);
    EXPECT_GE (longWait, 1995.0);
}

TEST (ProgramThreadTest, ANotificationEndsAPowerSaveWait)
{
    Program::powerSaveMode = true;
    juce::WaitableEvent waiting;
    bool notified = false;
    FunctionThread thread ([&] { waiting.signal(); notified = Program::letCurrentThreadWaitAccordingToPowerSaveMode (1); });
    thread.startThread();
    ASSERT_TRUE (waiting.wait (20000));
    // The notification is kept until the wait begins, so it ends the wait whenever it comes.
    thread.notify();
    EXPECT_TRUE (thread.waitForThreadToExit (20000));
    Program::powerSaveMode = false;
    EXPECT_TRUE (notified);
}

TEST (ProgramThreadTest, EcoModeReachesEveryThread)
{
    juce::WaitableEvent release;
    FunctionThread thread ([&] { release.wait (20000); });
    thread.startThread();

    Program::setProcessEcoMode (true);   // the clamp may be refused without privileges
    EXPECT_TRUE (Program::setProcessEcoMode (true)) << "the same mode again does nothing";
    for (const auto& task : juce::File ("/proc/self/task").findChildFiles (juce::File::findDirectories, false))
        EXPECT_EQ (::getpriority (PRIO_PROCESS, (id_t) task.getFileName().getIntValue()), 19) << task.getFileName();

    Program::setProcessEcoMode (false);   // lowering the nice value back may be refused without privileges
    release.signal();
    EXPECT_TRUE (thread.waitForThreadToExit (20000));
}
