// Tests that start child processes.
#include "../Support/LogTestSupport.h"
#include "../Support/ScratchDirectory.h"
#include <Tov/Standard/ConsoleProcess.h>
#include <Tov/Standard/PosixConsoleProcess.h>
#include <gtest/gtest.h>
#include <csignal>
#include <memory>

using namespace tov;
using namespace tov::test;

namespace
{

constexpr int timeOut = 20000;

std::unique_ptr<ConsoleProcess> start (const juce::String& executable, const juce::String& arguments, const juce::String& workingDirectory = {})
{
    return std::unique_ptr<ConsoleProcess> (ConsoleProcess::create (executable, arguments, workingDirectory));
}

/** A folder of its own for each test, removed afterwards. */
class ConsoleProcessTest : public ::testing::Test
{
protected:
    ScratchDirectory scratch;
    const juce::File folder = scratch.getFile();
};

/** The hexadecimal mask of a line of /proc/<pid>/status ("SigIgn:\t0000000000001000"). */
juce::String statusMask (const juce::String& status, const juce::String& field)
{
    return status.fromFirstOccurrenceOf (field + ":", false, false).upToFirstOccurrenceOf ("\n", false, false).trim();
}

} // namespace

TEST_F (ConsoleProcessTest, RunsAProgramAndReadsItsOutput)
{
    auto process = start ("/bin/echo", "hello   world");
    ASSERT_NE (process, nullptr);
    EXPECT_GT (process->getProcessId(), 0u);
    EXPECT_EQ (process->readAllOutput (timeOut), "hello world\n");
    EXPECT_EQ (process->waitForExit (timeOut), 0);
}

TEST_F (ConsoleProcessTest, StandardErrorComesWithTheOutput)
{
    auto process = start ("/bin/sh", "-c 'echo out; echo error >&2; echo out again'");
    ASSERT_NE (process, nullptr);
    EXPECT_EQ (process->readAllOutput (timeOut), "out\nerror\nout again\n");
}

TEST_F (ConsoleProcessTest, TheChildReadsWhatIsWrittenToItsInput)
{
    auto process = start ("/bin/cat", {});
    ASSERT_NE (process, nullptr);
    EXPECT_TRUE (process->writeInput ("first ", 6));
    EXPECT_TRUE (process->writeInput ("second", 6));
    process->closeInput();
    EXPECT_EQ (process->readAllOutput (timeOut), "first second");
    EXPECT_EQ (process->waitForExit (timeOut), 0);
}

TEST_F (ConsoleProcessTest, TheExitCodeIsKept)
{
    auto process = start ("/bin/sh", "-c 'exit 3'");
    ASSERT_NE (process, nullptr);
    EXPECT_EQ (process->waitForExit (timeOut), 3);
    int exitCode = 0;
    EXPECT_FALSE (process->isRunning (exitCode));
    EXPECT_EQ (exitCode, 3);
    EXPECT_EQ (process->waitForExit (0), 3);
}

TEST_F (ConsoleProcessTest, IsRunningUntilTheChildEnds)
{
    auto process = start ("/bin/cat", {});
    ASSERT_NE (process, nullptr);
    int exitCode = -7;
    EXPECT_TRUE (process->isRunning (exitCode));
    EXPECT_EQ (exitCode, -7);
    char buffer[16];
    EXPECT_EQ (process->readOutput (buffer, (int) sizeof (buffer), 50), -1);
    EXPECT_EQ (process->waitForExit (50), -1);
    process->closeInput();
    EXPECT_EQ (process->waitForExit (timeOut), 0);
    EXPECT_EQ (process->readOutput (buffer, (int) sizeof (buffer), timeOut), 0);
}

TEST_F (ConsoleProcessTest, KillEndsARunningChild)
{
    auto process = start ("/bin/cat", {});
    ASSERT_NE (process, nullptr);
    // Once cat echoes, the shell has become cat.
    char echo[2] = {};
    ASSERT_TRUE (process->writeInput ("x", 1));
    ASSERT_EQ (process->readOutput (echo, 1, timeOut), 1);
    const juce::File executable ("/proc/" + juce::String ((juce::uint64) process->getProcessId()) + "/exe");
    ASSERT_EQ (executable.getLinkedTarget(), juce::File ("/usr/bin/cat"));
    process->kill();
    EXPECT_FALSE (executable.exists());
    int exitCode = 0;
    EXPECT_FALSE (process->isRunning (exitCode));
    EXPECT_EQ (exitCode, 128 + SIGKILL);
    process->kill();
    EXPECT_EQ (process->waitForExit (0), 128 + SIGKILL);
}

TEST_F (ConsoleProcessTest, TheChildRunsInTheWorkingDirectory)
{
    auto process = start ("/bin/pwd", {}, folder.getFullPathName());
    ASSERT_NE (process, nullptr);
    EXPECT_EQ (process->readAllOutput (timeOut), folder.getFullPathName() + "\n");
}

TEST_F (ConsoleProcessTest, AMissingWorkingDirectoryFailsTheStart)
{
    EXPECT_EQ (start ("/bin/pwd", {}, folder.getChildFile ("missing").getFullPathName()), nullptr);
}

// The shell starts: it is the shell that reports the missing program, with its exit code 127.
TEST_F (ConsoleProcessTest, AMissingExecutableEndsWithTheShellsCode)
{
    auto process = start (folder.getChildFile ("missing").getFullPathName(), "--help");
    ASSERT_NE (process, nullptr);
    EXPECT_TRUE (process->readAllOutput (timeOut).contains ("not found"));
    EXPECT_EQ (process->waitForExit (timeOut), 127);
}

TEST_F (ConsoleProcessTest, TheExecutableIsQuotedAndTheArgumentsFollow)
{
    const auto executable = folder.getChildFile ("with blank").getChildFile ("my echo");
    ASSERT_TRUE (executable.getParentDirectory().createDirectory().wasOk());
    ASSERT_TRUE (juce::File ("/bin/echo").copyFileTo (executable));
    ASSERT_TRUE (executable.setExecutePermission (true));
    EXPECT_EQ (PosixConsoleProcess (executable.getFullPathName(), "a 'b c'", {}).getCommandLine(),
               "exec \"" + executable.getFullPathName() + "\" a 'b c'");
    EXPECT_EQ (PosixConsoleProcess ("/bin/true", {}, {}).getCommandLine(), "exec \"/bin/true\"");

    auto process = start (executable.getFullPathName(), "a 'b  c'");
    ASSERT_NE (process, nullptr);
    EXPECT_EQ (process->readAllOutput (timeOut), "a b  c\n");
}

TEST_F (ConsoleProcessTest, WritingToAChildThatEndedFailsWithoutASignal)
{
    auto process = start ("/bin/true", {});
    ASSERT_NE (process, nullptr);
    ASSERT_EQ (process->waitForExit (timeOut), 0);
    EXPECT_FALSE (process->writeInput ("late", 4));
    EXPECT_FALSE (process->writeInput ("later", 5));
}

TEST_F (ConsoleProcessTest, TheChildInheritsNoEndOfAnotherChildsPipes)
{
    auto first = start ("/bin/cat", {});
    ASSERT_NE (first, nullptr);
    const auto firstProcess = "/proc/" + juce::String ((juce::uint64) first->getProcessId()) + "/fd/";
    const auto firstInput = juce::File (firstProcess + "0").getLinkedTarget().getFileName();
    const auto firstOutput = juce::File (firstProcess + "1").getLinkedTarget().getFileName();
    ASSERT_TRUE (firstInput.startsWith ("pipe:[")) << firstInput;
    ASSERT_TRUE (firstOutput.startsWith ("pipe:[")) << firstOutput;

    auto second = start ("/bin/ls", "-l /proc/self/fd");
    ASSERT_NE (second, nullptr);
    const auto listing = second->readAllOutput (timeOut);
    EXPECT_TRUE (listing.contains ("0 -> pipe:[")) << listing;
    EXPECT_FALSE (listing.contains (firstInput)) << listing;
    EXPECT_FALSE (listing.contains (firstOutput)) << listing;
    first->closeInput();
    EXPECT_EQ (first->waitForExit (timeOut), 0);
}

// The crash handler of a running program, its ignored SIGPIPE and the signals blocked on the
// calling thread are not passed on. (posix_spawn itself leaves glibc's two internal signals,
// 32 and 33, ignored: the mask is read below them.)
TEST_F (ConsoleProcessTest, TheChildStartsWithEverySignalAtItsDefault)
{
    const auto previous = std::signal (SIGPIPE, SIG_IGN);
    sigset_t blocked, previousMask;
    sigemptyset (&blocked);
    sigaddset (&blocked, SIGUSR1);
    pthread_sigmask (SIG_BLOCK, &blocked, &previousMask);

    auto process = start ("/bin/cat", "/proc/self/status");
    pthread_sigmask (SIG_SETMASK, &previousMask, nullptr);
    std::signal (SIGPIPE, previous);
    ASSERT_NE (process, nullptr);
    const auto status = process->readAllOutput (timeOut);
    EXPECT_EQ (statusMask (status, "SigIgn").getHexValue64() & 0x7fffffff, 0) << status;
    EXPECT_EQ (statusMask (status, "SigBlk"), "0000000000000000") << status;
}

// A program of this library, started while this process's program runs, starts and stops as
// it does alone.
TEST_F (ConsoleProcessTest, AProgramStartedWhileTheProgramRunsRunsToItsEnd)
{
    TestProgram program;
    ASSERT_TRUE (program.startProgram());
    auto process = start ("/usr/bin/env", "HOME=" + folder.getFullPathName().quoted ('\'')
                                          + " ProgramData=" + folder.getFullPathName().quoted ('\'')
                                          + " DISPLAY= " + juce::String (TOV_PROGRAM_TEST_APPLICATION_PATH).quoted ('\''));
    ASSERT_NE (process, nullptr);
    const auto output = process->readAllOutput (timeOut);
    const int exitCode = process->waitForExit (timeOut);
    program.stopProgram();
    EXPECT_TRUE (output.startsWith ("started\nothers:")) << output;
    EXPECT_TRUE (output.endsWith ("stopped\n")) << output;
    EXPECT_EQ (exitCode, 0) << output;
}
