#include "CrashDump.h"
#include "Program.h"
#include <juce_events/juce_events.h>
#include <atomic>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace tov
{

namespace
{
// Written by prepare, outside any crash; read by the crashing thread.
struct Prepared
{
    char programDirectory[2048] = {};
    char programDescription[512] = {};
    char fallbackDirectory[2048] = {};
    char fallbackDescription[512] = {};
    char gcore[1024] = {};
    char opener[1024] = {};
    long utcOffset = 0;
};

Prepared prepared;
std::atomic<bool> dumpsEnabled { true };
std::atomic_flag dumpLock = ATOMIC_FLAG_INIT;

// A dump of a small process takes well under a second; a hung gdb must not keep the process alive.
constexpr int dumpTimeOutMilliseconds = 60000;

void copy (const juce::String& text, char* target, size_t capacity)
{
    text.copyToUTF8 (target, capacity);
}

juce::String findProgram (const juce::String& name)
{
    for (const auto& directory : juce::StringArray::fromTokens (juce::SystemStats::getEnvironmentVariable ("PATH", "/usr/bin:/bin"), ":", {}))
    {
        const auto file = juce::File::isAbsolutePath (directory) ? juce::File (directory).getChildFile (name) : juce::File();
        if (file.existsAsFile() && file.hasReadAccess())
            return file.getFullPathName();
    }
    return {};
}

void sleepMilliseconds (long milliseconds) noexcept
{
    const timespec duration { 0, milliseconds * 1000000 };
    ::nanosleep (&duration, nullptr);
}

/** Runs the program with the arguments and no input or output; its exit code, -1 when it could
    not run or took longer than the time-out (it is then killed). */
int runQuietly (char* const* arguments, int timeOutMilliseconds) noexcept
{
    const int nullDevice = ::open ("/dev/null", O_RDWR | O_CLOEXEC);
    // vfork, not fork: fork takes the allocator's locks, which the crashing thread may hold.
    const pid_t child = ::vfork();
    if (child == 0)
    {
        if (nullDevice >= 0)
            for (int descriptor = 0; descriptor < 3; ++descriptor)
                ::dup2 (nullDevice, descriptor);
        ::execve (arguments[0], arguments, environ);
        ::_exit (127);
    }
    if (nullDevice >= 0)
        ::close (nullDevice);
    if (child < 0)
        return -1;
    if (timeOutMilliseconds < 0)
        return 0;

    for (int waited = 0;; waited += 10)
    {
        int status = 0;
        const pid_t done = ::waitpid (child, &status, WNOHANG);
        if (done == child)
            return WIFEXITED (status) ? WEXITSTATUS (status) : -1;
        if (done < 0)
            return errno == ECHILD ? 0 : -1;   // a process that ignores SIGCHLD reaps nothing
        if (waited >= timeOutMilliseconds)
        {
            ::kill (child, SIGKILL);
            ::waitpid (child, &status, 0);
            return -1;
        }
        sleepMilliseconds (10);
    }
}

void getParent (const char* path, CrashDump::Path& parent) noexcept
{
    const char* lastSlash = path;
    for (const char* c = path; *c != 0; ++c)
        if (*c == '/')
            lastSlash = c;
    for (const char* c = path; c < lastSlash; ++c)
        parent.appendCharacter (*c);
}

bool runGcore (const char* path) noexcept
{
    // gcore names its file after the prefix and the process id.
    CrashDump::Path prefix, written, pid;
    prefix.append (path).append (".part");
    pid.appendDecimal ((uint64_t) ::getpid());
    written.append (prefix.get()).append (".").append (pid.get());

    char* arguments[] = { prepared.gcore, (char*) "-o", (char*) prefix.get(), (char*) pid.get(), nullptr };
    // gdb attaches from a child process, which a restricted ptrace scope allows only when asked.
    ::prctl (PR_SET_PTRACER, PR_SET_PTRACER_ANY, 0, 0, 0);
    const bool dumped = runQuietly (arguments, dumpTimeOutMilliseconds) == 0 && ::rename (written.get(), path) == 0;
    ::prctl (PR_SET_PTRACER, 0, 0, 0, 0);
    if (! dumped)
        ::unlink (written.get());
    return dumped;
}
} // namespace

//==============================================================================
void CrashDump::prepare()
{
    Prepared next;
    if (Program::isStillRunning())
    {
        auto& program = Program::get();
        copy (program.getProgramDataDirectory ({}, true).getChildFile ("dumps").getFullPathName(), next.programDirectory, sizeof (next.programDirectory));
        copy (program.getSoftwareVersion().toString(), next.programDescription, sizeof (next.programDescription));
    }

    // Without an application, the executable's name stands for it.
    auto fallback = juce::File::getSpecialLocation (juce::File::userApplicationDataDirectory);
    // (currentExecutableFile would name this library: JUCE asks where its own code lies.)
    juce::String description = juce::File ("/proc/self/exe").getLinkedTarget().getFileName();
    if (auto* application = juce::JUCEApplicationBase::getInstance())
    {
        fallback = fallback.getChildFile (application->getApplicationName());
        description = application->getApplicationName() + " " + application->getApplicationVersion();
    }
    copy (fallback.getChildFile ("dumps").getFullPathName(), next.fallbackDirectory, sizeof (next.fallbackDirectory));
    copy (description, next.fallbackDescription, sizeof (next.fallbackDescription));

    copy (findProgram ("gcore"), next.gcore, sizeof (next.gcore));
    if (Program::hasDisplay())
        copy (findProgram ("xdg-open"), next.opener, sizeof (next.opener));

    // Local time of a crash comes from this offset: the time-zone functions are not safe in a signal handler.
    const time_t now = ::time (nullptr);
    tm local {};
    ::localtime_r (&now, &local);
    next.utcOffset = local.tm_gmtoff;
    prepared = next;
}

void CrashDump::setEnabled (bool enabled) noexcept
{
    dumpsEnabled = enabled;
}

//==============================================================================
// Days to a civil date in the proleptic Gregorian calendar.
void CrashDump::writeFileNameTime (long long seconds, long utcOffsetSeconds, Path& text) noexcept
{
    seconds += utcOffsetSeconds;
    long long days = seconds >= 0 ? seconds / 86400 : (seconds - 86399) / 86400;
    const long long secondOfDay = seconds - days * 86400;
    days += 719468;
    const long long era = (days >= 0 ? days : days - 146096) / 146097;
    const long long dayOfEra = days - era * 146097;
    const long long yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const long long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const long long shiftedMonth = (5 * dayOfYear + 2) / 153;
    const long long day = dayOfYear - (153 * shiftedMonth + 2) / 5 + 1;
    const long long month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
    const long long year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);

    text.appendDecimal ((uint64_t) year).append ("-").appendDecimal ((uint64_t) month).append ("-").appendDecimal ((uint64_t) day)
        .append ("_").appendDecimal ((uint64_t) (secondOfDay / 3600)).append ("-").appendDecimal ((uint64_t) (secondOfDay / 60 % 60))
        .append ("-").appendDecimal ((uint64_t) (secondOfDay % 60));
}

void CrashDump::makePath (Path& path) noexcept
{
    const bool withProgram = Program::isStillRunning() && prepared.programDirectory[0] != 0;
    path.append (withProgram ? prepared.programDirectory : prepared.fallbackDirectory).append ("/");
    timespec now {};
    ::clock_gettime (CLOCK_REALTIME, &now);
    writeFileNameTime ((long long) now.tv_sec, prepared.utcOffset, path);
    path.append (" ").append (withProgram ? prepared.programDescription : prepared.fallbackDescription).append (".dmp");
}

bool CrashDump::ensureDirectory (const char* directory) noexcept
{
    Path partial;
    for (const char* c = directory; *c != 0; ++c)
    {
        if (*c == '/' && partial.size() > 0)
            ::mkdir (partial.get(), 0755);
        partial.appendCharacter (*c);
    }
    ::mkdir (partial.get(), 0755);
    struct stat status {};
    return ::stat (directory, &status) == 0 && S_ISDIR (status.st_mode);
}

bool CrashDump::write (const char* path) noexcept
{
    Path directory;
    getParent (path, directory);
    ensureDirectory (directory.get());

    if (! dumpsEnabled || prepared.gcore[0] == 0)
        return false;

    const int file = ::open (path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (file < 0)
        return false;
    ::close (file);

    // The first crashing thread to get here dumps; another waits, and the first one exits the process.
    while (dumpLock.test_and_set (std::memory_order_acquire))
        sleepMilliseconds (10);
    const bool dumped = runGcore (path);
    dumpLock.clear (std::memory_order_release);
    if (! dumped)
        ::unlink (path);
    return dumped;
}

void CrashDump::reveal (const char* path) noexcept
{
    if (prepared.opener[0] == 0)
        return;
    Path directory;
    getParent (path, directory);
    char* arguments[] = { prepared.opener, (char*) directory.get(), nullptr };
    runQuietly (arguments, -1);
}

} // namespace tov
