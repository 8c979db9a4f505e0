#include "ProfilerTestSupport.h"
#include "../../Support/DeletionWatcher.h"
#include "../../Support/TestService.h"
#include <Tov/Standard/Program.h>
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <Tov/Standard/Service.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace tov;
using namespace tov::test;

namespace
{
using Calls = std::vector<std::string>;

/** A profiler that adds nothing to the base: what the base does by default. */
class PlainProfiler : public Profiler
{
public:
    void beginFrame() override                                  {}
    void endFrame() override                                    {}
    void beginEvent (juce::StringRef, int) override             {}
    void endEvent() override                                    {}
    void markEvent (juce::StringRef) override                   {}
};
} // namespace

TEST (ProfilerTest, NoProfilerIsInstalledAtFirst)
{
    EXPECT_EQ (Profiler::get(), nullptr);
}

TEST (ProfilerTest, AScopeWithoutAProfilerIsNotEntered)
{
    const ProfilerScope scope ("Nothing");
    EXPECT_FALSE (scope.isEntered());
}

TEST (ProfilerTest, AScopeBeginsAndEndsAnEventOfTheInstalledProfiler)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    {
        const ProfilerScope outer ("Outer", 2);
        EXPECT_TRUE (outer.isEntered());
        const ProfilerScope inner ("Inner");
    }
    EXPECT_EQ (profiler->getCalls(), (Calls { "make Outer 2", "make Inner 0", "finished Inner at 2", "finished Outer at 1" }));
}

TEST (ProfilerTest, SetHoldsAReferenceAndTheReplacedProfilerIsDeleted)
{
    auto* first = new PlainProfiler();
    DeletionWatcher watcher (*first);
    Profiler::set (first);
    EXPECT_EQ (Profiler::get(), first);
    EXPECT_EQ (first->getReferenceCount(), 1u);

    auto* second = new PlainProfiler();
    Profiler::set (second);
    EXPECT_TRUE (watcher.deleted);
    EXPECT_EQ (Profiler::get(), second);
    Profiler::set (nullptr);
    EXPECT_EQ (Profiler::get(), nullptr);
}

TEST (ProfilerTest, SettingTheInstalledProfilerAgainKeepsItAlive)
{
    auto* profiler = new PlainProfiler();
    DeletionWatcher watcher (*profiler);
    Profiler::set (profiler);
    Profiler::set (profiler);
    EXPECT_FALSE (watcher.deleted);
    EXPECT_EQ (profiler->getReferenceCount(), 1u);
    EXPECT_EQ (Profiler::get(), profiler);
    Profiler::set (nullptr);
    EXPECT_TRUE (watcher.deleted);
}

TEST (ProfilerTest, AScopeThatEndsAfterTheProfilerWasRemovedDoesNothing)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    {
        const ProfilerScope scope ("Open");
        Profiler::set (nullptr);
        EXPECT_TRUE (scope.isEntered());
    }
    EXPECT_EQ (profiler->getCalls(), (Calls { "make Open 0" }));
    EXPECT_EQ (profiler->getCurrentThreadStackDepth(), 1u);
}

TEST (ProfilerTest, TheBaseKeepsNoCountersAndNamesNoCategories)
{
    InstalledProfiler<PlainProfiler> profiler;
    EXPECT_EQ (profiler->registerCounterInt ("frames"), 0);
    EXPECT_EQ (profiler->registerCounterDouble ("load"), 0);
    profiler->setCounterInt (0, 5);
    profiler->setCounterDouble (0, 0.5);
    profiler->setCategoryName (1, "Render");
}

TEST (ProfilerTest, NeitherTheRenderingNorTheUserInterfaceThreadIsKnownAtFirst)
{
    InstalledProfiler<PlainProfiler> profiler;
    EXPECT_EQ (profiler->getRenderingThreadId(), Service::getInvalidThreadId());
    EXPECT_EQ (profiler->getUserInterfaceThreadId(), Service::getInvalidThreadId());
    EXPECT_FALSE (profiler->isRenderingThreadCurrent());
    EXPECT_FALSE (profiler->isUserInterfaceThreadCurrent());
}

TEST (ProfilerTest, TheThreadsAreComparedWithTheCallingThread)
{
    InstalledProfiler<PlainProfiler> profiler;
    profiler->setRenderingThreadId (getCurrentJuceThreadId());
    EXPECT_TRUE (profiler->isRenderingThreadCurrent());
    EXPECT_FALSE (profiler->isUserInterfaceThreadCurrent());
    profiler->setUserInterfaceThreadId (getCurrentJuceThreadId());
    EXPECT_TRUE (profiler->isUserInterfaceThreadCurrent());
}

TEST (ProfilerTest, TheSystemThreadIdIsTheKernelsId)
{
    EXPECT_EQ (Profiler::getCurrentSystemThreadId(), (uint32_t) ::gettid());
    EXPECT_EQ (Profiler::getCurrentThreadName(), juce::String ((int) ::gettid()));
}

//==============================================================================
TEST (ProfilerTest, PreciseSleepAndYieldAreScopes)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    Program::preciseSleep (0.5);
    Program::yieldCurrentThreadAccordingToPowerSaveMode (true);
    EXPECT_EQ (profiler->getCalls(), (Calls { "make PreciseSleep 0", "finished PreciseSleep at 1",
                                              "make YieldOrSleep 0", "finished YieldOrSleep at 1" }));
}

TEST (ProfilerTest, PreciseSleepOfNothingOpensNoScope)
{
    InstalledProfiler<RecordingStackProfiler> profiler;
    Program::preciseSleep (0.0);
    EXPECT_TRUE (profiler->getCalls().empty());
}

TEST (ProfilerTest, AServicePassIsAScopeOfTheServicesNameAndItsPostUpdateAnother)
{
    TestService service ("Audio");
    bool nested = false;
    service.onUpdated = [&] { nested = ProfilerScope ("Inside").isEntered(); return true; };
    InstalledProfiler<RecordingStackProfiler> profiler;
    ASSERT_TRUE (service.callServiceUpdate (true));
    EXPECT_TRUE (nested);
    EXPECT_EQ (profiler->getCalls(), (Calls { "make Audio 0", "make Inside 0", "finished Inside at 2", "finished Audio at 1",
                                              "make PostUpdate 0", "finished PostUpdate at 1" }));
}

TEST (ProfilerTest, APassThatStopsTheServiceHasNoPostUpdateScope)
{
    TestService service ("Audio");
    service.onUpdated = [] { return false; };
    InstalledProfiler<RecordingStackProfiler> profiler;
    EXPECT_FALSE (service.callServiceUpdate (true));
    EXPECT_EQ (profiler->getCalls(), (Calls { "make Audio 0", "finished Audio at 1" }));
}
