#pragma once

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <exception>

namespace tov
{

/** The process's crash handler, started first and stopped last by the program.

    A crash on any thread (a fault signal, an abort, an uncaught exception) is reported on
    ExecutionContext::get() while a program runs, so that it reaches the log, waits for the
    logger to write it, writes a memory dump (see CrashDump), shows it, and ends the process
    with exitCode. Without a running program there is no report, only the dump. Stopping puts
    the previous handlers back.

    The report is built without allocation or locks; handing it to the log is the one step that
    needs them, and a watchdog finishes the crash should that step hang. A crash inside the
    handler goes straight to the dump and the exit.

    Also ignores SIGPIPE while started: a write to a closed socket must not kill the process.
*/
class ExceptionFilter
{
public:
    /** What a crash ends the process with. */
    static constexpr int exitCode = 45;

    ExceptionFilter() = default;
    ~ExceptionFilter()                       { stop(); }

    void start();
    void stop();
    bool isStarted() const noexcept          { return started; }

    /** Stores 0xabadf00dabadf00d at the address 0xdeadbeefdeadbeef: a crash recognisable in the registers. */
    [[noreturn]] static void crashDeliberately();

    /** For the lifetime of a thread's body: an alternate stack on which a stack overflow can
        still be reported, and the bounds of the thread's stack, which tell an overflow from
        other faults. The threads of the library hold one; the filter holds one for the thread
        that starts it. */
    class ThreadScope
    {
    public:
        ThreadScope();
        ~ThreadScope();

    private:
        void* alternateStack = nullptr;
        uintptr_t previousStackLow = 0;

        ThreadScope (const ThreadScope&) = delete;
        ThreadScope& operator= (const ThreadScope&) = delete;
    };

private:
    static constexpr int numSignals = 6;

    bool started = false;
    struct sigaction previousActions[numSignals] {};
    std::terminate_handler previousTerminateHandler = nullptr;
    void (*previousPipeHandler) (int) = nullptr;
    ThreadScope* startingThreadScope = nullptr;

    ExceptionFilter (const ExceptionFilter&) = delete;
    ExceptionFilter& operator= (const ExceptionFilter&) = delete;
};

} // namespace tov
