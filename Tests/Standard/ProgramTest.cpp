#include "../Support/LogTestSupport.h"
#include "../Support/ScopedCommandLine.h"
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/LoggerExecutionContextView.h>
#include <Tov/Standard/Application.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/ProgramGetSoftwareVersionMethod.h>
#include <Tov/Standard/ToStringExecutionContext.h>
#include <thread>
#include <unistd.h>
#include <Tov/Standard/TimeText.h>
#include <gtest/gtest.h>
#include <algorithm>

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

//==============================================================================
TEST (ProgramTest, AnEmptyCommandLineGivesAnEmptyMap)
{
    ScopedCommandLine commandLine ({});
    EXPECT_TRUE (Program::getCommandLineArgumentsAndValues ("=").empty());
}

TEST (ProgramTest, CommandLineKeysAndValues)
{
    ScopedCommandLine commandLine ({ "--profiler=a=b", "--flag", "--mode=fast", "--mode=slow", "--a=b:c", "\"--quoted=x y\"", "" });
    const auto arguments = Program::getCommandLineArgumentsAndValues ("=:");
    const std::map<juce::String, juce::String> expected {
        { "--profiler", "ab" }, { "--flag", "" }, { "--mode", "slow" }, { "--a", "bc" }, { "\"--quoted=x y\"", "" }
    };
    EXPECT_EQ (arguments, expected);
}

TEST (ProgramTest, TheStartLogsTheCommandLineAndTheDirectories)
{
    ScopedCommandLine commandLine ({ "--profiler=a", "two" });
    TestProgram program;
    ASSERT_TRUE (program.startProgram());
    const auto log = program.getLogFile ("Program", ".txt", true);
    program.stopProgram();

    std::string text;
    ASSERT_TRUE (replaceTimeStamps (readBytes (log), program.getStartTime(), juce::Time::getCurrentTime(), text));
    auto expected = expectedHelloBanner (program) + expectedStartLines (program)
                    + "<time>\tDone Program (<ms> ms)\r\n"
                      "<time>\t------------------------- bye ---------------------------------";
    const std::string emptyCommandLine = "Command Line: \r\n";
    expected.replace (expected.find (emptyCommandLine), emptyCommandLine.size(), "Command Line: --profiler=a two\r\n");
    EXPECT_EQ (replaceTimings (text), expected);
}

TEST (ProgramTest, TheProgramDirectoryIsTheExecutablesOrTheNearestWithTheChild)
{
    const auto executableDirectory = juce::File::getSpecialLocation (juce::File::hostApplicationPath).getParentDirectory();
    EXPECT_EQ (Program::getProgramDirectory ({}), executableDirectory);

    // "Tests" sits beside the executable's folder in the build tree: found one level up.
    EXPECT_EQ (Program::getProgramDirectory ("Tests"), executableDirectory.getParentDirectory().getChildFile ("Tests"));
    EXPECT_EQ (Program::getProgramDirectory ("NoSuchFolderAnywhere"), executableDirectory);

    // Kept for the process, also after the search failed.
    const auto late = executableDirectory.getChildFile ("NoSuchFolderAnywhere");
    ASSERT_TRUE (late.createDirectory());
    EXPECT_EQ (Program::getProgramDirectory ("NoSuchFolderAnywhere"), executableDirectory);
    late.deleteRecursively();
}

TEST (ProgramTest, DataSubdirectoriesOfBothKinds)
{
    TestProgram program;
    const auto user = program.getProgramDataDirectory ({}, true);
    EXPECT_EQ (program.getLogsDirectory (true), user.getChildFile ("logs"));
    EXPECT_EQ (program.getConfigurationsDirectory (true), user.getChildFile ("configurations"));
    EXPECT_EQ (program.getTracesDirectory (true), user.getChildFile ("traces"));
    EXPECT_EQ (program.getProgramDataDirectory ("dumps", true), user.getChildFile ("dumps"));
    for (auto* name : { "configurations", "logs", "traces", "dumps" })
        EXPECT_TRUE (user.getChildFile (name).isDirectory()) << name;
}

TEST (ProgramTest, MachineWideDataWithoutProgramDataGoesToTheCommonDirectory)
{
    const auto previous = juce::SystemStats::getEnvironmentVariable ("ProgramData", {});
    TestProgram program;
    for (auto* value : { "", "relative/path" })
    {
        ::setenv ("ProgramData", value, 1);
        const auto expected = juce::File::getSpecialLocation (juce::File::commonApplicationDataDirectory)
                                  .getChildFile ("KelvoTech").getChildFile (program.getProgramName()).getChildFile ("x");
        EXPECT_EQ (program.getProgramDataDirectory ("x", false), expected) << value;
    }
    ::setenv ("ProgramData", previous.toRawUTF8(), 1);
}

TEST (ProgramTest, RegisteringAServiceTwiceFromOneThreadKeepsTheSecond)
{
    TestProgram program;
    int first = 0, second = 0;
    auto& serviceA = reinterpret_cast<Service&> (first);
    auto& serviceB = reinterpret_cast<Service&> (second);
    auto* thisThread = (void*) juce::Thread::getCurrentThreadId();

    EXPECT_EQ (program.getServiceByThreadId (thisThread), nullptr);
    program.registerService (serviceA);
    program.registerService (serviceB);
    EXPECT_EQ (program.getServiceByThreadId (thisThread), &serviceB);

    // Another thread's entry is its own.
    void* otherThread = nullptr;
    std::thread thread ([&] { otherThread = (void*) juce::Thread::getCurrentThreadId(); program.registerService (serviceA); });
    thread.join();
    EXPECT_EQ (program.getServiceByThreadId (otherThread), &serviceA);
    EXPECT_EQ (program.getServiceByThreadId (thisThread), &serviceB);

    program.unregisterService();
    EXPECT_EQ (program.getServiceByThreadId (thisThread), nullptr);
    EXPECT_EQ (program.getServiceByThreadId (otherThread), &serviceA);
}

TEST (ProgramTest, NoServiceIsFoundOnceTheProgramStopped)
{
    TestProgram program;
    int first = 0;
    program.registerService (reinterpret_cast<Service&> (first));
    ASSERT_TRUE (program.startProgram());
    program.stopProgram();
    EXPECT_EQ (program.getServiceByThreadId ((void*) juce::Thread::getCurrentThreadId()), nullptr);
}

TEST (ProgramTest, DefaultHooks)
{
    Program program ("Plain", "main", 1, 0, 0, {});
    EXPECT_TRUE (program.systemRequestedQuit());
    EXPECT_TRUE (program.moreThanOneInstanceAllowed());
    program.anotherInstanceStarted ("--x");
    std::vector<juce::File> binaries;
    program.getWellKnownBinaries (binaries);
    EXPECT_TRUE (binaries.empty());
}

TEST (ProgramTest, ReflectsStartTimeAndSoftwareVersion)
{
    TestProgram program;
    TestProgram::ensureTestLibraryTree();
    ASSERT_EQ (program.getNumVariables(), 2u);
    EXPECT_EQ (program.getVariableSignature ((size_t) 0)->getName(), "startTime");
    EXPECT_EQ (program.getVariable (0)->getClassName(), "Time");
    EXPECT_EQ (program.getVariableSignature ((size_t) 1)->getName(), "softwareVersion");
    EXPECT_EQ (program.getVariable (1)->getClassName(), "SoftwareVersion");
    EXPECT_EQ (program.getVariable (1)->toString(), TestProgram::getCurrentTestName() + "-main-1.2.3.abc123");
}

TEST (ProgramTest, GetSoftwareVersionGivesACloneAndCarriesItsHttpAttributes)
{
    TestProgram program;
    ProgramGetSoftwareVersionMethod method;
    std::unique_ptr<Object> result (method.callOnThis (Program::get()));
    auto* version = dynamic_cast<SoftwareVersion*> (result.get());
    ASSERT_NE (version, nullptr);
    EXPECT_NE (version, &program.getSoftwareVersion());
    EXPECT_EQ (version->toString(), program.getSoftwareVersion().toString());
    EXPECT_STREQ (ProgramGetSoftwareVersionMethod::httpUri, "\"/api/live/softwareVersion\"");
    EXPECT_STREQ (ProgramGetSoftwareVersionMethod::httpVerb, "\"GET\"");
}

TEST (ProgramTest, TheStartTimeIsAReflectedTime)
{
    Time time (juce::Time (2026, 2, 7, 9, 5, 2, 0, false));
    EXPECT_EQ (time.toFileNameString(), "2026-3-7_9-5-2");
    EXPECT_EQ (time.makeState()->saveToString().trim(), "1772874302000");
    Time loaded;
    juce::String messages;
    ToStringExecutionContext context (messages);
    ASSERT_TRUE (loaded.loadFromState (context, time.makeState()));
    EXPECT_EQ (loaded.get(), time.get());
    loaded.reset();
    EXPECT_EQ (loaded.toString(), "N/A");
}

TEST (ProgramTest, TheApplicationForwardsToTheProgram)
{
    auto* program = new TestProgram ("beta", 4, 5, 6);
    std::unique_ptr<juce::JUCEApplicationBase> application (Program::createApplication (program));
    EXPECT_EQ (application->getApplicationName(), TestProgram::getCurrentTestName());
    EXPECT_EQ (application->getApplicationVersion(), "4.5.6");
    EXPECT_TRUE (application->moreThanOneInstanceAllowed());
    application->initialise ({});
    EXPECT_TRUE (program->getLoggerThread() != nullptr);
    application->shutdown();
    EXPECT_EQ (application->getApplicationReturnValue(), 0);
    EXPECT_FALSE (Program::isStillRunning());
}

TEST (ProgramTest, AFailedStartStillStopsAndExitsWith255)
{
    struct Failing : TestProgram
    {
        bool programStarted() override { return false; }
    };
    auto* program = new Failing();
    std::unique_ptr<juce::JUCEApplicationBase> application (Program::createApplication (program));
    application->initialise ({});
    EXPECT_TRUE (static_cast<Application&> (*application).hasFailedToStart());
    application->shutdown();
    EXPECT_EQ (application->getApplicationReturnValue(), 255);
}

TEST (ProgramTest, AFailedStartKeepsANonZeroExitCode)
{
    auto* program = new RefusingProgram();
    std::unique_ptr<juce::JUCEApplicationBase> application (Program::createApplication (program));
    application->initialise ({});
    application->shutdown();
    EXPECT_EQ (application->getApplicationReturnValue(), 7);
}

TEST (ProgramTest, StoppingIsSetFromTheFirstStepOfTheStop)
{
    struct Watching : TestProgram
    {
        bool stoppingSeen = false, runningSeen = false;
        int programStopped() override
        {
            stoppingSeen = isCurrentlyStopping();
            runningSeen = Program::isStillRunning();
            return 0;
        }
    } program;
    ASSERT_TRUE (program.startProgram());
    EXPECT_FALSE (program.isCurrentlyStopping());
    program.stopProgram();
    EXPECT_TRUE (program.stoppingSeen);
    EXPECT_TRUE (program.runningSeen);
}

TEST (ProgramTest, KillAllInstancesOfAnEmptySetIsTrue)
{
    std::set<unsigned long> none;
    EXPECT_TRUE (Program::killAllInstances (none));
}

TEST (ProgramTest, KillAllInstancesStopsAtTheFirstFailure)
{
    // Process ids above the kernel's limit never exist.
    std::set<unsigned long> ids { 4194305ul, 4194306ul };
    EXPECT_FALSE (Program::killAllInstances (ids));
    EXPECT_EQ (ids.size(), 2u);
}

TEST (ProgramTest, ThisProcessIsNotAmongTheOtherInstances)
{
    EXPECT_EQ (Program::getAlreadyRunningProcessInstances().count ((unsigned long) ::getpid()), 0u);
    EXPECT_TRUE (Program::getAlreadyRunningProcessInstances ("no such executable").empty());
}

TEST (ProgramTest, TheCommandLineOfAProcess)
{
    const auto own = Program::getCommandLineFromProcessId ((unsigned long) ::getpid());
    EXPECT_TRUE (own.startsWith (juce::File::getSpecialLocation (juce::File::currentExecutableFile).getFullPathName())
                 || own.startsWith ("./") || own.contains ("tovTests")) << own;
    EXPECT_EQ (Program::getCommandLineFromProcessId (4194305ul), "");
}

TEST (ProgramTest, EcoModeOffAtStartDoesNothing)
{
    EXPECT_TRUE (Program::setProcessEcoMode (false));
}

TEST (ProgramTest, DiscardingSleepTwiceTheSameWayIsTrue)
{
    EXPECT_TRUE (Program::setThreadDiscardOsSleepMode (false));
}

TEST (ProgramTest, AffinityMaskRoundTrips)
{
    const auto mask = Program::getProcessorAffinityMask();
    ASSERT_NE (mask, 0u);
    EXPECT_TRUE (Program::setProcessorAffinityMask (mask));
    EXPECT_EQ (Program::getProcessorAffinityMask(), mask);
    EXPECT_FALSE (Program::setProcessorAffinityMask (0)) << "no processor at all is refused";
    EXPECT_EQ (Program::getProcessorAffinityMask(), mask);
}

TEST (ProgramTest, PreciseSleepOfZeroReturnsAtOnce)
{
    const auto naps = Program::getNumPreciseSleepNaps();
    const auto start = juce::Time::getMillisecondCounterHiRes();
    Program::preciseSleep (0.0);
    Program::preciseSleep (-3.0);
    EXPECT_LT (juce::Time::getMillisecondCounterHiRes() - start, 1.0);
    EXPECT_EQ (Program::getNumPreciseSleepNaps(), naps);
}

TEST (ProgramTest, PreciseSleepOfFiveMillisecondsOnlySpins)
{
    const auto naps = Program::getNumPreciseSleepNaps();
    const auto start = juce::Time::getMillisecondCounterHiRes();
    Program::preciseSleep (5.0);
    EXPECT_GE (juce::Time::getMillisecondCounterHiRes() - start, 5.0);
    EXPECT_EQ (Program::getNumPreciseSleepNaps(), naps);

    Program::preciseSleep (20.0);
    EXPECT_GE (Program::getNumPreciseSleepNaps(), naps + 1) << "longer waits give the processor away";
}

TEST (ProgramTest, WaitingOutsideAJuceThreadIsRefused)
{
    EXPECT_FALSE (Program::letCurrentThreadWaitAccordingToPowerSaveMode (1));
}

TEST (ProgramTest, YieldingSleepsTenMillisecondsUnlessOnlyYielding)
{
    auto start = juce::Time::getMillisecondCounterHiRes();
    Program::yieldCurrentThreadAccordingToPowerSaveMode (false);
    EXPECT_GE (juce::Time::getMillisecondCounterHiRes() - start, 9.5);

    // A yield may wait for the processor on a loaded machine: the shortest of a few tries tells.
    double shortest = 1.0e9;
    for (int i = 0; i < 5; ++i)
    {
        start = juce::Time::getMillisecondCounterHiRes();
        Program::yieldCurrentThreadAccordingToPowerSaveMode (true);
        shortest = std::min (shortest, juce::Time::getMillisecondCounterHiRes() - start);
    }
    EXPECT_LT (shortest, 9.5);
}
