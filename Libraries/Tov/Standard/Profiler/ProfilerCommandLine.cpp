#include "ProfilerCommandLine.h"
#include "CpuTimingsProfiler.h"
#include "NSightProfiler.h"
#include "StdDevProfiler.h"
#include "TraceProfiler.h"
#include "UnrealProfiler.h"
#include "../Program.h"

namespace tov
{

ProfilerCommandLine::ProfilerCommandLine()
    : ProfilerCommandLine (Program::getCommandLineArgumentsAndValues ("=:"))
{
}

ProfilerCommandLine::ProfilerCommandLine (const std::map<juce::String, juce::String>& argumentsAndValues)
{
    const auto valueOf = [&argumentsAndValues] (const char* key, const juce::String& defaultValue)
    {
        const auto found = argumentsAndValues.find (key);
        return found != argumentsAndValues.end() ? found->second : defaultValue;
    };
    const auto isPresent = [&argumentsAndValues] (const char* key) { return argumentsAndValues.count (key) != 0; };

    name = valueOf ("--profiler", {});
    mode = valueOf ("--profilerMode", {});
    address = valueOf ("--profilerAddress", "127.0.0.1");
    disableRenderProfile = isPresent ("--disableRenderProfile");
    disableUiProfile = isPresent ("--disableUiProfile");
    disableOtherProfile = isPresent ("--disableOtherProfile");
}

void ProfilerCommandLine::installProfiler()
{
    if (Profiler::get() != nullptr)
        return;
    if (auto* profiler = ProfilerCommandLine().createProfiler())
        Profiler::set (profiler);
}

template <class Event>
static Profiler* withThreadClasses (StackEventProfiler<Event>* profiler, const ProfilerCommandLine& options)
{
    profiler->setRecordRenderingThread (! options.disableRenderProfile);
    profiler->setRecordUserInterfaceThread (! options.disableUiProfile);
    profiler->setRecordOtherThreads (! options.disableOtherProfile);
    return profiler;
}

// The names compare exactly: "unreal" is not "Unreal".
Profiler* ProfilerCommandLine::createProfiler() const
{
    if (name == "Unreal")
        return withThreadClasses (new UnrealProfiler (isFileMode(), address), *this);
    if (name == "NSight")
        return new NSightProfiler (NSightProfiler::getDefaultLibraryNames());
    if (name == "StdDev")
        return withThreadClasses (new StdDevProfiler(), *this);
    if (name == "Trace")
        return withThreadClasses (new TraceProfiler(), *this);
    if (name == "CpuTimings")
        return withThreadClasses (new CpuTimingsProfiler(), *this);
    return nullptr;
}

} // namespace tov
