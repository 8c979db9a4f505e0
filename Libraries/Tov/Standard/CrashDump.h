#pragma once

#include "CrashText.h"

namespace tov
{

/** The memory dump of a crashing process: "<time> <description>.dmp" in a "dumps" directory.

    The dump is a core file written by gdb's gcore, which attaches to the crashing process;
    without gcore there is no dump. Where the dump goes and how it is described is captured by
    prepare, outside any crash; everything else is safe to call from a signal handler.
*/
class CrashDump
{
public:
    using Path = CrashText<4096>;

    /** Captures the directories, descriptions and helper programs; the exception filter calls it when it starts. */
    static void prepare();

    /** The dump's file for a crash now: in the running program's "dumps" directory, described by
        its software version; without one, in the user application data directory (below the
        application's name when there is a JUCE application) with the application's name and
        version as description. */
    static void makePath (Path& path) noexcept;

    /** Creates the directory and the file, and writes the dump into it, one crashing thread at a
        time. False when no dump was written; the file is then removed again. */
    static bool write (const char* path) noexcept;

    /** Shows the dump's folder in the file browser when there is a display. */
    static void reveal (const char* path) noexcept;

    /** Dumps are on until switched off; tests that crash on purpose without needing the dump
        switch them off. */
    static void setEnabled (bool enabled) noexcept;

    /** "2026-3-7_9-5-2" for a number of seconds since 1970 and an offset of local time to UTC. */
    static void writeFileNameTime (long long secondsSince1970, long utcOffsetSeconds, Path& text) noexcept;

    /** Creates the directory and its parents; true when it exists afterwards. */
    static bool ensureDirectory (const char* directory) noexcept;
};

} // namespace tov
