#pragma once

#include "ConsoleProcess.h"
#include <sys/types.h>

namespace tov
{

/** A console process started with posix_spawn through "/bin/sh -c", so that its arguments
    are read as a command line is; the shell then becomes the program (see getCommandLine).
    A pipe goes to its standard input, one comes from its standard output and standard error
    together. The parent's ends are closed on exec, so that no other child inherits them. The
    process is held as a pidfd as well, so that waits for its end take a time-out without
    polling. */
class PosixConsoleProcess : public ConsoleProcess
{
public:
    PosixConsoleProcess (const juce::String& executable, const juce::String& arguments, const juce::String& workingDirectory);
    ~PosixConsoleProcess() override;

    int readOutput (void* buffer, int maxBytes, int timeOutMilliseconds) override;
    bool writeInput (const void* data, int numBytes) override;
    bool isRunning (int& exitCode) override;
    unsigned long getProcessId() const override             { return processId > 0 ? (unsigned long) processId : 0; }
    void closeInput() override;
    int waitForExit (int timeOutMilliseconds) override;

    /** The command that the shell runs: the executable in double quotes, then a blank and the
        arguments when there are any, after "exec", so that the shell becomes the program and
        the process id is the program's. */
    juce::String getCommandLine() const;

protected:
    bool start() override;

private:
    juce::String executable, arguments, workingDirectory;
    int inputWriteEnd = -1, inputReadEnd = -1, outputReadEnd = -1, outputWriteEnd = -1, processHandle = -1;
    pid_t processId = -1;
    /** Set once the child has been reaped: its exit code is then kept here. */
    bool exited = false;
    int exitCode = 0;

    static void closeDescriptor (int& descriptor);

    JUCE_DECLARE_NON_COPYABLE (PosixConsoleProcess)
};

} // namespace tov
