#include "ProfilerTestSupport.h"
#include "../../Support/ScopedCommandLine.h"
#include <Tov/Standard/Profiler/CpuTimingsProfiler.h>
#include <Tov/Standard/Profiler/NSightProfiler.h>
#include <Tov/Standard/Profiler/ProfilerCommandLine.h>
#include <Tov/Standard/Profiler/StdDevProfiler.h>
#include <Tov/Standard/Profiler/TraceProfiler.h>
#include <gtest/gtest.h>
#include <memory>

using namespace tov;
using namespace tov::test;

namespace
{

/** The profiler that the command line makes, held until the end of the test; null for none. */
struct MadeProfiler
{
    explicit MadeProfiler (std::vector<std::string> parameters)
    {
        ScopedCommandLine commandLine (std::move (parameters));
        profiler = ProfilerCommandLine().createProfiler();
        if (profiler != nullptr)
            profiler->incrementReferenceCounter();
    }
    ~MadeProfiler()     { if (profiler != nullptr) profiler->decrementReferenceCounter(); }

    template <class Type>
    Type* as() const    { return dynamic_cast<Type*> (profiler); }

    Profiler* profiler = nullptr;
};

ProfilerCommandLine readCommandLine (std::vector<std::string> parameters)
{
    ScopedCommandLine commandLine (std::move (parameters));
    return ProfilerCommandLine();
}

} // namespace

TEST (ProfilerCommandLineTest, WithoutOptionsNothingIsAsked)
{
    const auto options = readCommandLine ({});
    EXPECT_EQ (options.name, "");
    EXPECT_EQ (options.mode, "");
    EXPECT_EQ (options.address, "127.0.0.1");
    EXPECT_FALSE (options.disableRenderProfile);
    EXPECT_FALSE (options.disableUiProfile);
    EXPECT_FALSE (options.disableOtherProfile);
    EXPECT_EQ (options.createProfiler(), nullptr);
}

TEST (ProfilerCommandLineTest, AnEmptyNameInstallsNothing)
{
    EXPECT_EQ (MadeProfiler ({ "--profiler=" }).profiler, nullptr);
    EXPECT_EQ (MadeProfiler ({ "--profiler" }).profiler, nullptr);
}

TEST (ProfilerCommandLineTest, TheOptionsAreReadWithTheirValues)
{
    const auto options = readCommandLine ({ "--profiler=Unreal", "--profilerMode=file", "--profilerAddress=studio.local",
                                            "--disableRenderProfile", "--disableUiProfile=no", "--disableOtherProfile:0" });
    EXPECT_EQ (options.name, "Unreal");
    EXPECT_EQ (options.mode, "file");
    EXPECT_EQ (options.address, "studio.local");
    EXPECT_TRUE (options.disableRenderProfile);
    EXPECT_TRUE (options.disableUiProfile);
    EXPECT_TRUE (options.disableOtherProfile);
}

TEST (ProfilerCommandLineTest, OnlyTheModeFileSelectsAFileAndAnyOtherTheSocket)
{
    EXPECT_TRUE (readCommandLine ({ "--profiler=Unreal", "--profilerMode=file" }).isFileMode());
    EXPECT_FALSE (readCommandLine ({ "--profiler=Unreal" }).isFileMode());
    EXPECT_FALSE (readCommandLine ({ "--profiler=Unreal", "--profilerMode=socket" }).isFileMode());
    EXPECT_FALSE (readCommandLine ({ "--profiler=Unreal", "--profilerMode=File" }).isFileMode());
    EXPECT_FALSE (readCommandLine ({ "--profiler=Unreal", "--profilerMode=" }).isFileMode());
}

TEST (ProfilerCommandLineTest, EachNameMakesItsProfiler)
{
    EXPECT_NE (MadeProfiler ({ "--profiler=NSight" }).as<NSightProfiler>(), nullptr);
    EXPECT_NE (MadeProfiler ({ "--profiler=StdDev" }).as<StdDevProfiler>(), nullptr);
    EXPECT_NE (MadeProfiler ({ "--profiler=Trace" }).as<TraceProfiler>(), nullptr);
    EXPECT_NE (MadeProfiler ({ "--profiler=CpuTimings" }).as<CpuTimingsProfiler>(), nullptr);
}

TEST (ProfilerCommandLineTest, NamesCompareExactly)
{
    for (const auto* name : { "--profiler=unreal", "--profiler=trace", "--profiler=STDDEV", "--profiler=Nsight", "--profiler=CpuTimings ", "--profiler=Other" })
        EXPECT_EQ (MadeProfiler ({ name }).profiler, nullptr) << name;
}

TEST (ProfilerCommandLineTest, TheDisableOptionsLeaveTheirThreadClassesOut)
{
    const MadeProfiler all ({ "--profiler=StdDev" });
    EXPECT_TRUE (all.as<StdDevProfiler>()->isRecordingRenderingThread());
    EXPECT_TRUE (all.as<StdDevProfiler>()->isRecordingUserInterfaceThread());
    EXPECT_TRUE (all.as<StdDevProfiler>()->isRecordingOtherThreads());

    const MadeProfiler noRendering ({ "--profiler=Trace", "--disableRenderProfile" });
    EXPECT_FALSE (noRendering.as<TraceProfiler>()->isRecordingRenderingThread());
    EXPECT_TRUE (noRendering.as<TraceProfiler>()->isRecordingUserInterfaceThread());
    EXPECT_TRUE (noRendering.as<TraceProfiler>()->isRecordingOtherThreads());

    const MadeProfiler noOthers ({ "--profiler=CpuTimings", "--disableUiProfile", "--disableOtherProfile" });
    EXPECT_TRUE (noOthers.as<CpuTimingsProfiler>()->isRecordingRenderingThread());
    EXPECT_FALSE (noOthers.as<CpuTimingsProfiler>()->isRecordingUserInterfaceThread());
    EXPECT_FALSE (noOthers.as<CpuTimingsProfiler>()->isRecordingOtherThreads());
}

TEST (ProfilerCommandLineTest, InstallingSetsTheProfilerOfTheCommandLine)
{
    ScopedCommandLine commandLine ({ "--profiler=Trace" });
    ProfilerCommandLine::installProfiler();
    EXPECT_NE (dynamic_cast<TraceProfiler*> (Profiler::get()), nullptr);
    Profiler::set (nullptr);
}

TEST (ProfilerCommandLineTest, InstallingKeepsAProfilerThatIsAlreadyInstalled)
{
    InstalledProfiler<RecordingStackProfiler> installed;
    ScopedCommandLine commandLine ({ "--profiler=Trace" });
    ProfilerCommandLine::installProfiler();
    EXPECT_EQ (Profiler::get(), installed.get());
}
