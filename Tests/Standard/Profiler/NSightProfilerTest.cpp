#include "ProfilerTestSupport.h"
#include "../../Support/DebugOutputCapture.h"
#include <Tov/Core/Class.h>
#include <Tov/Standard/Profiler/NSightProfiler.h>
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <gtest/gtest.h>
#include <dlfcn.h>

using namespace tov;
using namespace tov::test;

namespace
{

/** The stand-in for NVTX that the tests build, with what it recorded. */
class NvtxStub
{
public:
    NvtxStub() : library (::dlopen (TOV_NVTX_STUB_PATH, RTLD_NOW | RTLD_LOCAL))
    {
        if (library == nullptr)
            return;
        getNumCalls = reinterpret_cast<int (*)()> (::dlsym (library, "tovNvtxStubGetNumCalls"));
        getCall = reinterpret_cast<const char* (*) (int)> (::dlsym (library, "tovNvtxStubGetCall"));
        reinterpret_cast<void (*)()> (::dlsym (library, "tovNvtxStubReset"))();
    }
    ~NvtxStub()     { if (library != nullptr) ::dlclose (library); }

    bool isLoaded() const noexcept  { return library != nullptr && getNumCalls != nullptr && getCall != nullptr; }

    std::vector<std::string> getCalls() const
    {
        std::vector<std::string> calls;
        for (int i = 0; i < getNumCalls(); ++i)
            calls.push_back (getCall (i));
        return calls;
    }

private:
    void* library;
    int (*getNumCalls)() = nullptr;
    const char* (*getCall) (int) = nullptr;
};

using Calls = std::vector<std::string>;

} // namespace

TEST (NSightProfilerTest, TheDefaultLibrariesAreNvtxs)
{
    EXPECT_EQ (NSightProfiler::getDefaultLibraryNames(), juce::StringArray ({ "libnvToolsExt.so.1", "libnvToolsExt.so" }));
}

TEST (NSightProfilerTest, TheClassHasNoDefaultObjectThatWouldLoadALibrary)
{
    DebugOutputCapture output;
    EXPECT_EQ (NSightProfiler::staticClass.getDefaultObject(), nullptr);
    EXPECT_EQ (NSightProfiler::staticClass.createObject (nullptr), nullptr);
    EXPECT_EQ (output.getText(), "");
}

TEST (NSightProfilerTest, WithoutTheLibraryItSaysSoOnceAndDoesNothing)
{
    DebugOutputCapture output;
    InstalledProfiler<NSightProfiler> profiler (juce::StringArray ({ "libtovMissingNvtx.so.1", "/nowhere/libnvToolsExt.so" }));
    EXPECT_FALSE (profiler->isLibraryLoaded());
    {
        const ProfilerScope scope ("Scope");
        profiler->markEvent ("Mark");
        profiler->setCategoryName (1, "Category");
        profiler->beginFrame();
        profiler->endFrame();
    }
    EXPECT_EQ (Profiler::get(), profiler.get());
    EXPECT_EQ (output.getText(), "Could not find nvToolsExt64_1, NSight support is disabled\n");
}

TEST (NSightProfilerTest, OnAMachineWithoutNvtxTheDefaultProfilerIsInert)
{
    if (void* nvtx = ::dlopen ("libnvToolsExt.so.1", RTLD_LAZY | RTLD_LOCAL))
    {
        ::dlclose (nvtx);
        GTEST_SKIP() << "NVTX is installed here";
    }
    DebugOutputCapture output;
    InstalledProfiler<NSightProfiler> profiler (NSightProfiler::getDefaultLibraryNames());
    EXPECT_FALSE (profiler->isLibraryLoaded());
    EXPECT_EQ (output.getText(), "Could not find nvToolsExt64_1, NSight support is disabled\n");
}

TEST (NSightProfilerTest, ScopesArePushedAndPoppedRangesAndMarksAreMarkers)
{
    NvtxStub stub;
    ASSERT_TRUE (stub.isLoaded());
    DebugOutputCapture output;
    InstalledProfiler<NSightProfiler> profiler (juce::StringArray ({ "libtovMissingNvtx.so.1", TOV_NVTX_STUB_PATH }));
    ASSERT_TRUE (profiler->isLibraryLoaded());
    EXPECT_EQ (output.getText(), "Nsight profiling support is enabled\n");
    {
        const ProfilerScope outer ("Outer");
        const ProfilerScope inner ("Inner", 3);
        profiler->markEvent ("Tick");
    }
    profiler->setCategoryName (3, "Render");
    profiler->beginFrame();
    profiler->endFrame();
    EXPECT_EQ (stub.getCalls(), (Calls { "push Outer", "push Inner", "mark Tick", "pop", "pop", "category 3 Render" }));
}

TEST (NSightProfilerTest, EveryThreadPassesItsScopesOn)
{
    NvtxStub stub;
    ASSERT_TRUE (stub.isLoaded());
    InstalledProfiler<NSightProfiler> profiler (juce::StringArray ({ TOV_NVTX_STUB_PATH }));
    runOnPlainThread ([] { const ProfilerScope scope ("Elsewhere"); });
    EXPECT_EQ (stub.getCalls(), (Calls { "push Elsewhere", "pop" }));
}
