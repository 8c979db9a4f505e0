#include "ExceptionFilter.h"
#include "CrashDump.h"
#include "CrashReport.h"
#include "ExecutionContext.h"
#include "Program.h"
#include <atomic>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

namespace tov
{

namespace
{
const int handledSignals[] = { SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGTRAP, SIGABRT };

// Large enough for the report and the hand-off to the log, which runs on it too.
constexpr size_t alternateStackSize = 256 * 1024;
// How far below a thread's stack a fault still counts as an overflow: the guard gap of the
// main thread's stack is a megabyte.
constexpr uintptr_t guardReach = (1u << 20) + (64u << 10);
// The hand-off to the log may wait on locks a crash left taken: past this, the crash goes on without it.
constexpr unsigned watchdogSeconds = 10;
constexpr int loggerTimeOutMilliseconds = 5000;

// Read by the signal handler, hence in the static block of thread-local storage.
__attribute__ ((tls_model ("initial-exec"))) thread_local uintptr_t stackLow = 0;
__attribute__ ((tls_model ("initial-exec"))) thread_local int crashDepth = 0;

// The dump of the first crash, for the watchdog.
std::atomic<bool> watchdogPathTaken { false };
CrashDump::Path watchdogPath;

[[noreturn]] void finish (const char* dumpPath) noexcept
{
    if (CrashDump::write (dumpPath))
        CrashDump::reveal (dumpPath);
    ::_exit (ExceptionFilter::exitCode);
}

void watchdogExpired (int) noexcept
{
    finish (watchdogPath.get());
}

void armWatchdog (const CrashDump::Path& path) noexcept
{
    if (watchdogPathTaken.exchange (true))
        return;
    watchdogPath.append (path.get());
    struct sigaction action {};
    action.sa_handler = &watchdogExpired;
    ::sigaction (SIGALRM, &action, nullptr);
    ::alarm (watchdogSeconds);
}

// The one step that allocates and locks: the report goes to the log like any error, and the
// logger writes it before the process ends. On the logger's own thread nobody else would.
void reportToProgram (const CrashReport& report)
{
    if (! Program::isStillRunning())
        return;
    CrashReport::Text text;
    report.write (text);
    ExecutionContext::get().error (juce::String::fromUTF8 (text.get()));

    auto* logger = Program::isStillRunning() ? Program::get().getLoggerThread() : nullptr;
    if (logger == nullptr)
        return;
    if (logger->getThreadId() == juce::Thread::getCurrentThreadId())
        logger->drain();
    else
        logger->waitUntilDrained (loggerTimeOutMilliseconds);
}

bool isInStackGuard (uintptr_t address) noexcept
{
    return stackLow != 0 && address < stackLow + 4096 && address + guardReach >= stackLow;
}

void handleCrash (int signal, siginfo_t* info, void* context)
{
    // Re-entered by a crash inside the handler: no second report.
    const int depth = ++crashDepth;
    if (depth > 2)
        ::_exit (ExceptionFilter::exitCode);

    CrashDump::Path dumpPath;
    CrashDump::makePath (dumpPath);
    if (depth == 1)
    {
        CrashReport report;
        report.readSignal (signal, *info, *static_cast<const ucontext_t*> (context),
                           signal == SIGSEGV && isInStackGuard ((uintptr_t) info->si_addr));
        armWatchdog (dumpPath);
        reportToProgram (report);
        ::alarm (0);
    }
    finish (dumpPath.get());
}

// An uncaught exception, or a terminate called by hand, ends up in the handler through an abort,
// whatever terminate handler the application had set.
[[noreturn]] void terminateThroughCrash()
{
    std::abort();
}

void readStackLow()
{
    pthread_attr_t attributes;
    if (pthread_getattr_np (pthread_self(), &attributes) != 0)
        return;
    void* address = nullptr;
    size_t size = 0;
    if (pthread_attr_getstack (&attributes, &address, &size) == 0)
        stackLow = (uintptr_t) address;
    pthread_attr_destroy (&attributes);
}
} // namespace

//==============================================================================
// The mapping starts with the stack that was there before (a sanitizer's, an outer scope's),
// which comes back at the end; the alternate stack is the rest.
ExceptionFilter::ThreadScope::ThreadScope() : previousStackLow (stackLow)
{
    readStackLow();
    void* memory = ::mmap (nullptr, alternateStackSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        return;
    auto* previous = static_cast<stack_t*> (memory);
    stack_t stack {};
    stack.ss_sp = static_cast<char*> (memory) + 4096;
    stack.ss_size = alternateStackSize - 4096;
    if (::sigaltstack (&stack, previous) == 0)
        alternateStack = memory;
    else
        ::munmap (memory, alternateStackSize);
}

ExceptionFilter::ThreadScope::~ThreadScope()
{
    stackLow = previousStackLow;
    if (alternateStack == nullptr)
        return;
    stack_t previous = *static_cast<stack_t*> (alternateStack);
    if ((previous.ss_flags & SS_DISABLE) != 0)
    {
        previous = {};
        previous.ss_flags = SS_DISABLE;
    }
    ::sigaltstack (&previous, nullptr);
    ::munmap (alternateStack, alternateStackSize);
}

//==============================================================================
void ExceptionFilter::start()
{
    if (started)
        return;
    CrashDump::prepare();
    startingThreadScope = new ThreadScope();

    struct sigaction action {};
    action.sa_sigaction = &handleCrash;
    // SA_NODEFER lets a crash inside the handler re-enter it instead of killing the process.
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
    sigemptyset (&action.sa_mask);
    for (int i = 0; i < numSignals; ++i)
        ::sigaction (handledSignals[i], &action, &previousActions[i]);
    previousTerminateHandler = std::set_terminate (&terminateThroughCrash);
    previousPipeHandler = std::signal (SIGPIPE, SIG_IGN);
    started = true;
}

void ExceptionFilter::stop()
{
    if (! started)
        return;
    std::signal (SIGPIPE, previousPipeHandler == SIG_ERR ? SIG_DFL : previousPipeHandler);
    std::set_terminate (previousTerminateHandler);
    for (int i = numSignals; --i >= 0;)
        ::sigaction (handledSignals[i], &previousActions[i], nullptr);
    delete startingThreadScope;
    startingThreadScope = nullptr;
    started = false;
}

// Not instrumented by the thread sanitizer, which would fault first in its own bookkeeping of the address.
__attribute__ ((no_sanitize_thread)) void ExceptionFilter::crashDeliberately()
{
    *reinterpret_cast<volatile uint64_t*> ((uintptr_t) 0xdeadbeefdeadbeefull) = 0xabadf00dabadf00dull;
    __builtin_unreachable();
}

} // namespace tov
