#pragma once

#include "BenchmarkProgram.h"
#include "PacedPeerService.h"
#include "RandomInterleaving.h"
#include <juce_events/juce_events.h>
#include <cstdio>
#include <string>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tov::benchmarks
{

/** This program started again with a mode argument, as the far end of a benchmark over
    loopback; killed when this object goes.

    Start it before this process has a program and threads of its own: the far process would
    inherit their state, and a tov program spawned from a process whose program runs was seen
    to crash. The far process tells its port with announcePort on its standard output.
*/
class FarProcess
{
public:
    ~FarProcess()
    {
        if (processId <= 0)
            return;
        ::kill (processId, SIGKILL);
        ::waitpid (processId, nullptr, 0);
        ::close (output);
    }

    /** The port that the far process listens on, or -1. */
    int start (const char* programPath, const char* modeArgument)
    {
        int pipeEnds[2];
        if (::pipe (pipeEnds) != 0)
            return -1;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init (&actions);
        posix_spawn_file_actions_adddup2 (&actions, pipeEnds[1], 1);
        posix_spawn_file_actions_addclose (&actions, pipeEnds[0]);
        const std::string path = programPath, mode = modeArgument;
        char* arguments[] = { const_cast<char*> (path.c_str()), const_cast<char*> (mode.c_str()), nullptr };
        // The far process starts with every signal at its default and none blocked, whatever
        // this process's crash handler and threads have set.
        posix_spawnattr_t attributes;
        posix_spawnattr_init (&attributes);
        sigset_t none, all;
        sigemptyset (&none);
        sigfillset (&all);
        posix_spawnattr_setsigmask (&attributes, &none);
        posix_spawnattr_setsigdefault (&attributes, &all);
        posix_spawnattr_setflags (&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        const int result = ::posix_spawn (&processId, path.c_str(), &actions, &attributes, arguments, environ);
        posix_spawnattr_destroy (&attributes);
        posix_spawn_file_actions_destroy (&actions);
        ::close (pipeEnds[1]);
        output = pipeEnds[0];
        return result == 0 ? readPort() : -1;
    }

    /** In the far process: tells the process that started it where it listens. */
    static void announcePort (int port)
    {
        std::printf ("port %d\n", port);
        std::fflush (stdout);
    }

private:
    pid_t processId = -1;
    int output = -1;

    int readPort()
    {
        std::string line;
        char character;
        while (::read (output, &character, 1) == 1 && character != '\n')
            line += character;
        return line.rfind ("port ", 0) == 0 ? std::stoi (line.substr (5)) : -1;
    }
};

/** The far process's loop once its services run: a server on a port of 127.0.0.1, told to the
    process that started this one, that hands what it receives to the program, until the process
    is killed. 1 when it cannot listen. */
inline int serveUntilKilled()
{
    ProgramConnectionServer server { HostIdentifier::localhost, 0 };
    ExecutionContext context;
    if (! server.startServer (context))
        return 1;
    FarProcess::announcePort (server.getBoundPort());
    for (;;)
    {
        server.updateServer();
        juce::Thread::sleep (50);
    }
}

/** The whole of main for a benchmark with a far end. Started with the mode argument, this
    program is the far process: runFar() under a running program. Otherwise it reads Google
    Benchmark's flags, starts the far process first, then runs runNear (the far port, -1 when it
    could not start) under a program of its own; its answer, or the program's when it is 0, is
    the exit code. Both programs are a BenchmarkProgram of the name and the classes. */
template <class RunFar, class RunNear>
int runWithFarProcess (int argc, char** argv, const char* programName, const AddClasses& programClasses,
                       const char* modeArgument, RunFar&& runFar, RunNear&& runNear)
{
    const bool farMode = argc == 2 && std::string (argv[1]) == modeArgument;
    if (! farMode && ! initializeWithRandomInterleaving (argc, argv))
        return 1;
    FarProcess farProcess;
    const int farPort = farMode ? 0 : farProcess.start (argv[0], modeArgument);

    juce::ScopedJuceInitialiser_GUI juceInitialiser;
    BenchmarkProgram program (programName, programClasses);
    if (! program.startProgram())
        return 1;
    if (farMode)
        return runFar();
    const int result = runNear (farPort);
    const int stopped = program.stopProgram();
    return result != 0 ? result : stopped;
}

} // namespace tov::benchmarks
