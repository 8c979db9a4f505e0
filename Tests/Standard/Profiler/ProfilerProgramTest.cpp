// A program chooses its profiler as it starts, and removes it as it stops.
#include "ProfilerTestSupport.h"
#include "../../Support/DeletionWatcher.h"
#include "../../Support/LogTestSupport.h"
#include "../../Support/ScopedCommandLine.h"
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <Tov/Standard/Profiler/StdDevProfiler.h>
#include <Tov/Standard/Profiler/TraceProfiler.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{

/** Notes the profiler that is installed when the application's start runs. */
class ProfilerNotingProgram : public TestProgram
{
public:
    Profiler* atStart = nullptr;

protected:
    bool programStarted() override
    {
        atStart = Profiler::get();
        return true;
    }
};

} // namespace

TEST (ProfilerProgramTest, TheStartInstallsTheProfilerOfTheCommandLineBeforeTheApplicationStarts)
{
    ScopedCommandLine commandLine ({ "--profiler=StdDev", "--disableUiProfile" });
    ProfilerNotingProgram program;
    ASSERT_TRUE (program.startProgram());
    auto* profiler = dynamic_cast<StdDevProfiler*> (Profiler::get());
    ASSERT_NE (profiler, nullptr);
    EXPECT_EQ (program.atStart, profiler);
    EXPECT_FALSE (profiler->isRecordingUserInterfaceThread());
    EXPECT_TRUE (profiler->isRecordingOtherThreads());

    DeletionWatcher watcher (*profiler);
    program.stopProgram();
    EXPECT_TRUE (watcher.deleted);
    EXPECT_EQ (Profiler::get(), nullptr);
}

TEST (ProfilerProgramTest, AnUnknownNameStartsWithoutAProfiler)
{
    ScopedCommandLine commandLine ({ "--profiler=Unknown" });
    ProfilerNotingProgram program;
    ASSERT_TRUE (program.startProgram());
    EXPECT_EQ (program.atStart, nullptr);
    program.stopProgram();
}

TEST (ProfilerProgramTest, AProfilerInstalledBeforeTheStartIsKeptAndRemovedAtTheStop)
{
    InstalledProfiler<RecordingStackProfiler> installed;
    ScopedCommandLine commandLine ({ "--profiler=Trace" });
    ProfilerNotingProgram program;
    ASSERT_TRUE (program.startProgram());
    EXPECT_EQ (program.atStart, installed.get());
    program.stopProgram();
    EXPECT_EQ (Profiler::get(), nullptr);
}

TEST (ProfilerProgramTest, AScopeOpenWhileTheProgramStopsEndsWithoutAProfiler)
{
    ScopedCommandLine commandLine ({ "--profiler=Trace" });
    TestProgram program;
    ASSERT_TRUE (program.startProgram());
    {
        const ProfilerScope scope ("Across the stop");
        EXPECT_TRUE (scope.isEntered());
        program.stopProgram();
    }
    EXPECT_EQ (Profiler::get(), nullptr);
}
