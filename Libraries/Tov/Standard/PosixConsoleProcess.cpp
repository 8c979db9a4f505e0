#include "PosixConsoleProcess.h"
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace tov
{

PosixConsoleProcess::PosixConsoleProcess (const juce::String& executable, const juce::String& arguments, const juce::String& workingDirectory)
    : executable (executable), arguments (arguments), workingDirectory (workingDirectory)
{
}

// The child is not ended here: that is what kill is for. One that has ended is reaped.
PosixConsoleProcess::~PosixConsoleProcess()
{
    int ignored;
    if (processId > 0)
        isRunning (ignored);
    for (auto* descriptor : { &inputWriteEnd, &inputReadEnd, &outputReadEnd, &outputWriteEnd, &processHandle })
        closeDescriptor (*descriptor);
}

void PosixConsoleProcess::closeDescriptor (int& descriptor)
{
    if (descriptor >= 0)
        ::close (descriptor);
    descriptor = -1;
}

juce::String PosixConsoleProcess::getCommandLine() const
{
    auto commandLine = "exec " + executable.quoted();
    if (arguments.isNotEmpty())
        commandLine << " " << arguments;
    return commandLine;
}

//==============================================================================
namespace
{
/** The attributes of a child that starts clean: every signal at its default and none blocked,
    whatever the crash handler, the ignored SIGPIPE and the calling thread's mask are here. */
class CleanSpawnAttributes
{
public:
    CleanSpawnAttributes()
    {
        posix_spawnattr_init (&attributes);
        sigset_t none, all;
        sigemptyset (&none);
        sigfillset (&all);
        posix_spawnattr_setsigmask (&attributes, &none);
        posix_spawnattr_setsigdefault (&attributes, &all);
        posix_spawnattr_setflags (&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~CleanSpawnAttributes()     { posix_spawnattr_destroy (&attributes); }

    posix_spawnattr_t attributes;
};

/** The child's standard streams on its ends of the pipes, and its working directory. */
class ChildFileActions
{
public:
    ChildFileActions (int inputReadEnd, int outputWriteEnd, const juce::String& workingDirectory)
    {
        posix_spawn_file_actions_init (&actions);
        posix_spawn_file_actions_adddup2 (&actions, inputReadEnd, 0);
        posix_spawn_file_actions_adddup2 (&actions, outputWriteEnd, 1);
        posix_spawn_file_actions_adddup2 (&actions, outputWriteEnd, 2);
        if (workingDirectory.isNotEmpty())
            posix_spawn_file_actions_addchdir_np (&actions, workingDirectory.toRawUTF8());
    }
    ~ChildFileActions()         { posix_spawn_file_actions_destroy (&actions); }

    posix_spawn_file_actions_t actions;
};
} // namespace

// Every descriptor is made close-on-exec: the child gets its ends as copies on 0, 1 and 2,
// which dup2 leaves open, and no other child started meanwhile inherits any of them.
bool PosixConsoleProcess::start()
{
    int input[2], output[2];
    if (::pipe2 (input, O_CLOEXEC) != 0)
        return false;
    inputReadEnd = input[0];
    inputWriteEnd = input[1];
    if (::pipe2 (output, O_CLOEXEC) != 0)
        return false;
    outputReadEnd = output[0];
    outputWriteEnd = output[1];

    const std::string command = getCommandLine().toStdString();
    char shell[] = "/bin/sh", option[] = "-c";
    char* argumentPointers[] = { shell, option, const_cast<char*> (command.c_str()), nullptr };
    const CleanSpawnAttributes attributes;
    const ChildFileActions actions (inputReadEnd, outputWriteEnd, workingDirectory);
    const bool started = ::posix_spawn (&processId, shell, &actions.actions, &attributes.attributes, argumentPointers, environ) == 0;

    // The parent keeps only its own ends, so that the output ends when the child is gone.
    closeDescriptor (inputReadEnd);
    closeDescriptor (outputWriteEnd);
    if (! started)
    {
        processId = -1;
        return false;
    }
    processHandle = (int) ::syscall (SYS_pidfd_open, processId, 0);
    return true;
}

//==============================================================================
int PosixConsoleProcess::readOutput (void* buffer, int maxBytes, int timeOutMilliseconds)
{
    if (outputReadEnd < 0)
        return 0;
    pollfd descriptor { outputReadEnd, POLLIN, 0 };
    int ready;
    while ((ready = ::poll (&descriptor, 1, juce::jmax (0, timeOutMilliseconds))) < 0 && errno == EINTR)
        ;
    if (ready <= 0)
        return -1;
    ssize_t numRead;
    while ((numRead = ::read (outputReadEnd, buffer, (size_t) maxBytes)) < 0 && errno == EINTR)
        ;
    return numRead > 0 ? (int) numRead : 0;
}

// A child that has closed its input would raise SIGPIPE, which ends a process that does not
// ignore it: the signal is blocked for the write, and taken back if the write raised it.
bool PosixConsoleProcess::writeInput (const void* data, int numBytes)
{
    if (inputWriteEnd < 0)
        return false;
    sigset_t pipeSignal, previousMask;
    sigemptyset (&pipeSignal);
    sigaddset (&pipeSignal, SIGPIPE);
    pthread_sigmask (SIG_BLOCK, &pipeSignal, &previousMask);

    const auto* bytes = static_cast<const char*> (data);
    bool written = true;
    for (int done = 0; done < numBytes && written;)
    {
        const auto numWritten = ::write (inputWriteEnd, bytes + done, (size_t) (numBytes - done));
        if (numWritten > 0)
            done += (int) numWritten;
        else if (errno != EINTR)
            written = false;
    }
    if (! written && errno == EPIPE)
    {
        const timespec noWait {};
        sigtimedwait (&pipeSignal, nullptr, &noWait);
    }
    pthread_sigmask (SIG_SETMASK, &previousMask, nullptr);
    return written;
}

void PosixConsoleProcess::closeInput()
{
    closeDescriptor (inputWriteEnd);
}

//==============================================================================
bool PosixConsoleProcess::isRunning (int& result)
{
    if (processId <= 0)
    {
        result = -1;
        return false;
    }
    if (! exited)
    {
        int status = 0;
        const auto reaped = ::waitpid (processId, &status, WNOHANG);
        if (reaped == 0)
            return true;
        exited = true;
        // Reaped elsewhere (ECHILD) leaves nothing to tell.
        exitCode = reaped != processId ? -1
                 : WIFEXITED (status) ? WEXITSTATUS (status)
                 : WIFSIGNALED (status) ? 128 + WTERMSIG (status) : -1;
    }
    result = exitCode;
    return false;
}

int PosixConsoleProcess::waitForExit (int timeOutMilliseconds)
{
    int result = -1;
    if (! isRunning (result))
        return result;
    if (processHandle >= 0)
    {
        pollfd descriptor { processHandle, POLLIN, 0 };
        int ready;
        while ((ready = ::poll (&descriptor, 1, juce::jmax (0, timeOutMilliseconds))) < 0 && errno == EINTR)
            ;
    }
    return isRunning (result) ? -1 : result;
}

} // namespace tov
