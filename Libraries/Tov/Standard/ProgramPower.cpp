// Waits, priorities, sleep inhibition and affinity of the process.
#include "Program.h"
#include "Profiler/ProfilerScope.h"
#include <dlfcn.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <cstring>

namespace tov
{

static std::atomic<uint64_t> numPreciseSleepNaps { 0 };

uint64_t Program::getNumPreciseSleepNaps() noexcept
{
    return numPreciseSleepNaps.load();
}

void Program::preciseSleep (double milliseconds)
{
    if (milliseconds <= 0.0)
        return;
    if (powerSaveMode)
    {
        // Precision is given up on purpose.
        juce::Thread::sleep ((int) milliseconds);
        return;
    }

    // A sleep of 1 ms can take several: the last 6 ms are always busy-waited.
    const ProfilerScope scope ("PreciseSleep");
    const double start = juce::Time::getMillisecondCounterHiRes();
    const double end = start + milliseconds;
    double previous = start;
    while (end - previous > 6.0)
    {
        ++numPreciseSleepNaps;
        juce::Thread::sleep (1);
        const double now = juce::Time::getMillisecondCounterHiRes();
        if (now > end)
            juce::Logger::outputDebugString ("juce::Thread::sleep took too long! : asked 1 ms, got: " + juce::String (now - previous) + "ms");
        previous = now;
    }
    while (juce::Time::getMillisecondCounterHiRes() < end)
        ;
}

void Program::yieldCurrentThreadAccordingToPowerSaveMode (bool yieldOnly)
{
    const ProfilerScope scope ("YieldOrSleep");
    if (powerSaveMode)
        juce::Thread::sleep (990);
    else if (yieldOnly)
        juce::Thread::yield();
    else
        juce::Thread::sleep (10);
}

bool Program::letCurrentThreadWaitAccordingToPowerSaveMode (int milliseconds)
{
    auto* thread = juce::Thread::getCurrentThread();
    if (thread == nullptr)
        return false;
    return thread->wait (powerSaveMode && milliseconds < 990 ? 990 : milliseconds);
}

//==============================================================================
// Every thread of the process, as /proc lists them now.
template <class Function>
static bool forEachThread (Function&& function)
{
    bool result = true;
    for (const auto& task : juce::File ("/proc/self/task").findChildFiles (juce::File::findDirectories, false))
        result = function ((pid_t) task.getFileName().getIntValue()) && result;
    return result;
}

namespace
{
struct SchedulingAttributes
{
    uint32_t size;
    uint32_t policy;
    uint64_t flags;
    int32_t nice;
    uint32_t priority;
    uint64_t runtime, deadline, period;
    uint32_t utilMin, utilMax;
};
} // namespace

static bool setUtilisationClamp (pid_t thread, bool low)
{
    constexpr uint64_t keepAll = 0x18, utilClampMax = 0x40;
    SchedulingAttributes attributes {};
    attributes.size = sizeof (attributes);
    attributes.flags = keepAll | utilClampMax;
    attributes.utilMax = low ? 256 : 1024;
    return ::syscall (SYS_sched_setattr, thread, &attributes, 0) == 0;
}

static bool setInputOutputPriority (pid_t thread, bool low)
{
    constexpr int whoProcess = 1, classShift = 13, idleClass = 3, bestEffortClass = 2;
    const int priority = low ? (idleClass << classShift) : ((bestEffortClass << classShift) | 4);
    return ::syscall (SYS_ioprio_set, whoProcess, thread, priority) == 0;
}

static std::atomic<bool> ecoMode { false };

bool Program::setProcessEcoMode (bool on)
{
    if (on == ecoMode)
        return true;
    const bool priority = forEachThread ([on] (pid_t thread) { return ::setpriority (PRIO_PROCESS, (id_t) thread, on ? 19 : 0) == 0; });
    const bool inputOutput = forEachThread ([on] (pid_t thread) { return setInputOutputPriority (thread, on); });
    const bool throttling = forEachThread ([on] (pid_t thread) { return setUtilisationClamp (thread, on); });
    ecoMode = on;
    return priority && inputOutput && throttling;
}

//==============================================================================
// A logind inhibitor "sleep:idle" held as a file descriptor while on. libsystemd is
// opened at run time: without it, or without a system bus, there is nothing to hold.
namespace
{
struct BusError
{
    const char* name;
    const char* message;
    int needFree;
};

class SleepInhibitor
{
public:
    bool acquire()
    {
        auto* library = ::dlopen ("libsystemd.so.0", RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr)
            return false;
        using OpenSystem = int (*) (void**);
        using CallMethod = int (*) (void*, const char*, const char*, const char*, const char*, BusError*, void**, const char*, ...);
        using ReadMessage = int (*) (void*, const char*, ...);
        using Unreference = void* (*) (void*);
        using FreeError = void (*) (BusError*);
        auto openSystem = (OpenSystem) ::dlsym (library, "sd_bus_open_system");
        auto callMethod = (CallMethod) ::dlsym (library, "sd_bus_call_method");
        auto readMessage = (ReadMessage) ::dlsym (library, "sd_bus_message_read");
        auto unreferenceMessage = (Unreference) ::dlsym (library, "sd_bus_message_unref");
        auto unreferenceBus = (Unreference) ::dlsym (library, "sd_bus_unref");
        auto freeError = (FreeError) ::dlsym (library, "sd_bus_error_free");
        if (! openSystem || ! callMethod || ! readMessage || ! unreferenceMessage || ! unreferenceBus || ! freeError)
            return false;

        void* bus = nullptr;
        if (openSystem (&bus) < 0)
            return false;
        BusError error {};
        void* reply = nullptr;
        int descriptor = -1;
        if (callMethod (bus, "org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager", "Inhibit",
                        &error, &reply, "ssss", "sleep:idle", "tov", "The program keeps the machine awake", "block") >= 0
            && readMessage (reply, "h", &descriptor) >= 0)
            heldDescriptor = ::fcntl (descriptor, F_DUPFD_CLOEXEC, 3);
        freeError (&error);
        if (reply != nullptr)
            unreferenceMessage (reply);
        unreferenceBus (bus);
        return heldDescriptor >= 0;
    }

    bool release()
    {
        if (heldDescriptor >= 0)
            ::close (heldDescriptor);
        heldDescriptor = -1;
        return true;
    }

private:
    int heldDescriptor = -1;
};

SleepInhibitor sleepInhibitor;
std::atomic<bool> discardOsSleep { false };
} // namespace

bool Program::setThreadDiscardOsSleepMode (bool on)
{
    if (on == discardOsSleep)
        return true;
    discardOsSleep = on;
    return on ? sleepInhibitor.acquire() : sleepInhibitor.release();
}

//==============================================================================
bool Program::setProcessorAffinityMask (uint64_t mask)
{
    cpu_set_t set;
    CPU_ZERO (&set);
    for (int cpu = 0; cpu < 64; ++cpu)
        if ((mask >> cpu) & 1)
            CPU_SET (cpu, &set);
    return forEachThread ([&set] (pid_t thread) { return ::sched_setaffinity (thread, sizeof (set), &set) == 0; });
}

uint64_t Program::getProcessorAffinityMask()
{
    cpu_set_t set;
    CPU_ZERO (&set);
    if (::sched_getaffinity (::getpid(), sizeof (set), &set) != 0)
        return 0;
    uint64_t mask = 0;
    for (int cpu = 0; cpu < 64; ++cpu)
        if (CPU_ISSET (cpu, &set))
            mask |= (uint64_t) 1 << cpu;
    return mask;
}

} // namespace tov
