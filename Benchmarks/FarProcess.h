#pragma once

#include "BenchmarkProgram.h"
#include "PacedPeerService.h"
#include "RandomInterleaving.h"
#include <Tov/Standard/ConsoleProcess.h>
#include <juce_events/juce_events.h>
#include <cstdio>
#include <memory>
#include <string>

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
    // What the far process wrote after its port, its standard error included (the same pipe
    // carries both), is shown once it has ended, on this process's standard error.
    ~FarProcess()
    {
        if (process == nullptr)
            return;
        process->kill();
        std::fputs (process->readAllOutput (0).toRawUTF8(), stderr);
    }

    /** The port that the far process listens on, or -1. */
    int start (const char* programPath, const char* modeArgument)
    {
        process.reset (ConsoleProcess::create (programPath, modeArgument, {}));
        return process != nullptr ? readPort() : -1;
    }

    /** In the far process: tells the process that started it where it listens. */
    static void announcePort (int port)
    {
        std::printf ("port %d\n", port);
        std::fflush (stdout);
    }

private:
    /** How long the far process may take to start its program and its server. */
    static constexpr int startTimeOutMilliseconds = 60000;

    std::unique_ptr<ConsoleProcess> process;

    /** The port of the first line that announcePort wrote; -1 when the output ends, or stays
        silent for the time-out, before it. The far process's standard error comes through the
        same pipe: its lines go on to this process's standard error. */
    int readPort()
    {
        std::string line;
        char character;
        while (process->readOutput (&character, 1, startTimeOutMilliseconds) == 1)
        {
            if (character != '\n')
                line += character;
            else if (line.rfind ("port ", 0) == 0)
                return std::stoi (line.substr (5));
            else
            {
                std::fprintf (stderr, "%s\n", line.c_str());
                line.clear();
            }
        }
        return -1;
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
