#pragma once

#include <juce_core/juce_core.h>
#include <map>

namespace tov
{

class Profiler;

/** The profiler that the program's command line asks for:

        --profiler=<name>          "Unreal", "NSight", "StdDev", "Trace" or "CpuTimings", exactly
        --profilerMode=file        the trace stream goes to a file rather than to a socket
        --profilerAddress=<host>   where the trace stream's socket connects, "127.0.0.1" by default
        --disableRenderProfile     the rendering thread is not recorded
        --disableUiProfile         the user interface thread is not recorded
        --disableOtherProfile      other threads are not recorded

    Values are split off at "=" or ":"; the three disable options count by their presence. Any
    other name, or none, installs nothing, without a word.
*/
class ProfilerCommandLine
{
public:
    /** The options of the process's command line. */
    ProfilerCommandLine();
    /** The options among these arguments and values (as Program::getCommandLineArgumentsAndValues gives them). */
    explicit ProfilerCommandLine (const std::map<juce::String, juce::String>& argumentsAndValues);

    /** Installs the profiler that the options name, unless a profiler is installed already. */
    static void installProfiler();

    /** A new profiler as the options ask for it, with its thread classes set; null for none. */
    Profiler* createProfiler() const;

    /** True when the trace stream is to go to a file; to a socket otherwise. */
    bool isFileMode() const noexcept                        { return mode == "file"; }

    juce::String name, mode, address { "127.0.0.1" };
    bool disableRenderProfile = false, disableUiProfile = false, disableOtherProfile = false;
};

} // namespace tov
