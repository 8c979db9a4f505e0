// UnrealProfiler: scopes, marks, frames, counters and thread names as a trace stream, read
// back by tov-trace's reader.
#include "ProfilerTestSupport.h"
#include "TraceTestSupport.h"
#include "../../Support/FreePort.h"
#include "../../Support/LogTestSupport.h"
#include "../../Support/ScopedCommandLine.h"
#include <Tov/Standard/Profiler/ProfilerCommandLine.h>
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <Tov/Standard/Profiler/UnrealProfiler.h>
#include <TraceReader/TraceListener.h>
#include <gtest/gtest.h>
#include <future>
#include <thread>

using namespace tov;
using namespace tov::test;

namespace
{

/** The profiler, installed for the test on a file, and removed (which closes the stream) by finish(). */
struct InstalledUnrealProfiler
{
    InstalledUnrealProfiler (const TraceWriterOptions& options, const juce::File& file) : profiler (new UnrealProfiler (options, file))
    {
        Profiler::set (profiler);
    }
    ~InstalledUnrealProfiler()              { finish(); }

    void finish()
    {
        if (profiler == nullptr)
            return;
        profiler->flushScopes();
        Profiler::set (nullptr);
        profiler = nullptr;
    }

    UnrealProfiler* profiler;
};

/** A profiler held by a reference for the test, and released (which deletes it) at its end. */
template <class Type>
struct Held
{
    explicit Held (Type* made) : profiler (made)    { if (profiler != nullptr) profiler->incrementReferenceCounter(); }
    ~Held()                                         { if (profiler != nullptr) profiler->decrementReferenceCounter(); }
    Type* operator->() const                        { return profiler; }
    Type* get() const                               { return profiler; }

    Type* profiler;
};

} // namespace

TEST (UnrealProfilerTest, AScenarioWritesTheGoldenFileByteForByte)
{
    TemporaryTrace trace;
    {
        InstalledUnrealProfiler installed (makeTestOptions (false), trace.file);
        auto& profiler = *installed.profiler;
        profiler.beginFrame();
        {
            const ProfilerScope outer ("Outer");
            const ProfilerScope inner ("Inner");
        }
        profiler.markEvent ("Mark");
        const auto objects = profiler.registerCounterInt ("Objects");
        profiler.setCounterInt (objects, -42);
        const auto load = profiler.registerCounterDouble ("Load");
        profiler.setCounterDouble (load, 0.5);
        profiler.endFrame();
    }
    const auto written = trace.read();
    const juce::File golden (TOV_TRACE_GOLDEN_FILE);
    if (! golden.existsAsFile())
    {
        // Made anew when it is missing, to be checked with tov-trace dump and committed.
        golden.replaceWithData (written.data(), written.size());
        FAIL() << "no golden stream: written to " << golden.getFullPathName();
    }
    EXPECT_EQ (written, readStream (golden));
    EXPECT_EQ (summaryOf (written),
               "threads 1\n"
               "  thread 2 \"\" system=0 sortHint=0 events=6 scopes=3\n"
               "scopes 3 open 0\n"
               "  \"Inner\" count=1 total=0.010us mean=0.010us\n"
               "  \"Mark\" count=1 total=0.000us mean=0.000us\n"
               "  \"Outer\" count=1 total=0.030us mean=0.030us\n"
               "counters 2\n"
               "  counter 0 \"Objects\" int values=1 last=-42\n"
               "  counter 1 \"Load\" double values=1 last=0.5\n"
               "frames begin=1 end=1\n");
}

TEST (UnrealProfilerTest, ANameOf2000CharactersIsWrittenAs1023)
{
    TemporaryTrace trace;
    const juce::String longName = juce::String::repeatedString ("abcdefghij", 200);
    {
        InstalledUnrealProfiler installed (makeTestOptions (false), trace.file);
        const ProfilerScope scope (longName);
        installed.profiler->registerCounterInt (longName);
    }
    TraceStreamReader reader;
    const auto stream = trace.read();
    ASSERT_TRUE (reader.read (stream.data(), stream.size()));
    const TraceReport report (reader);
    ASSERT_EQ (report.getScopes().size(), 1u);
    EXPECT_EQ (report.getSpecName (report.getScopes()[0].specId), longName.substring (0, 1023).toStdString());
    EXPECT_EQ (linesStartingWith (summaryOf (stream), "  counter 0 \"" + longName.substring (0, 1023).toStdString() + "\" int").size(), 1u);
}

TEST (UnrealProfilerTest, EachScopeWritesItsSpecAnew)
{
    TemporaryTrace trace;
    {
        InstalledUnrealProfiler installed (makeTestOptions (false), trace.file);
        for (int i = 0; i < 3; ++i)
            const ProfilerScope scope ("Again");
    }
    const auto dump = dumpOf (trace.read());
    EXPECT_EQ (linesStartingWith (dump, "important uid=18 CpuProfiler.EventSpec"), (std::vector<std::string> {
        "important uid=18 CpuProfiler.EventSpec Id=1 Name=\"Again\"",
        "important uid=18 CpuProfiler.EventSpec Id=2 Name=\"Again\"",
        "important uid=18 CpuProfiler.EventSpec Id=3 Name=\"Again\"" }));
}

TEST (UnrealProfilerTest, ScopesOfSeveralThreadsReadBackExactly)
{
    TemporaryTrace trace;
    {
        InstalledUnrealProfiler installed (makeTestOptions (true), trace.file);
        std::vector<std::thread> threads;
        for (int t = 0; t < 3; ++t)
            threads.emplace_back ([t]
            {
                const juce::String name ("Work" + juce::String (t));
                for (int i = 0; i < 500; ++i)
                {
                    const ProfilerScope outer (name);
                    const ProfilerScope inner ("Inner");
                }
            });
        for (auto& thread : threads)
            thread.join();
    }
    const auto summary = summaryOf (trace.read());
    // Each read of a thread's clock is 10 cycles (ns) after its last; the first scope of each
    // thread lasts 10 more, as the thread's first buffer notes the clock between its two reads.
    EXPECT_EQ (linesStartingWith (summary, "  \""), (std::vector<std::string> {
        "  \"Inner\" count=1500 total=15.000us mean=0.010us",
        "  \"Work0\" count=500 total=15.010us mean=0.030us",
        "  \"Work1\" count=500 total=15.010us mean=0.030us",
        "  \"Work2\" count=500 total=15.010us mean=0.030us" }));
    EXPECT_EQ (linesStartingWith (summary, "scopes "), (std::vector<std::string> { "scopes 3000 open 0" }));
    const auto threads = linesStartingWith (summary, "  thread ");
    ASSERT_EQ (threads.size(), 4u);
    int numWithScopes = 0, numWorkers = 0;
    for (const auto& line : threads)
    {
        numWithScopes += line.find (" scopes=1000") != std::string::npos ? 1 : 0;
        numWorkers += line.find ("\"Trace\" system=0 sortHint=2147483647 events=1 scopes=0") != std::string::npos ? 1 : 0;
    }
    EXPECT_EQ (numWithScopes, 3);
    EXPECT_EQ (numWorkers, 1);
}

TEST (UnrealProfilerTest, TheThreadsOfJuceAreNamed)
{
    TemporaryTrace trace;
    std::atomic<uint32_t> threadSystemId { 0 };
    {
        InstalledUnrealProfiler installed (makeTestOptions (true), trace.file);
        struct Named : juce::Thread
        {
            explicit Named (std::atomic<uint32_t>& systemId) : juce::Thread ("Named Worker"), systemId (systemId) {}
            void run() override
            {
                systemId = Profiler::getCurrentSystemThreadId();
                const ProfilerScope scope ("Named");
            }
            std::atomic<uint32_t>& systemId;
        } thread (threadSystemId);
        thread.startThread();
        EXPECT_TRUE (thread.stopThread (10000));
    }
    const auto summary = summaryOf (trace.read());
    // Its id on the stream depends on whether the worker named itself first.
    std::vector<std::string> named;
    for (const auto& line : linesStartingWith (summary, "  thread "))
        if (line.find (" \"Named Worker\" system=") != std::string::npos)
            named.push_back (line);
    ASSERT_EQ (named.size(), 1u) << summary;
    EXPECT_NE (named[0].find (" system=" + std::to_string (threadSystemId.load()) + " sortHint=0 events=2 scopes=1"), std::string::npos) << summary;
}

TEST (UnrealProfilerTest, WithoutAStreamChannelsStayOffAndNothingIsWritten)
{
    const auto port = (uint16_t) findFreePort();

    const Held<UnrealProfiler> profiler (new UnrealProfiler (makeTestOptions (false), "127.0.0.1", port));
    EXPECT_FALSE (profiler->getWriter().isChannelEnabled (TraceWriter::Channel::cpu));
    EXPECT_FALSE (profiler->getWriter().isChannelEnabled (TraceWriter::Channel::counters));
    EXPECT_EQ (profiler->registerCounterInt ("A"), 0);
    EXPECT_EQ (profiler->registerCounterInt ("B"), 1);
    EXPECT_EQ (profiler->getWriter().getImportantCacheSize(), 0u);
}

TEST (UnrealProfilerTest, AFileThatCannotBeMadeLeavesChannelsOff)
{
    const Held<UnrealProfiler> profiler (new UnrealProfiler (makeTestOptions (false), juce::File ("/nonexistent/x.utrace")));
    EXPECT_FALSE (profiler->getWriter().isChannelEnabled (TraceWriter::Channel::frame));
}

TEST (UnrealProfilerTest, OldTracesGoUntilFourRemain)
{
    const ScratchDirectory folder;
    const auto now = juce::Time::getCurrentTime();
    for (int i = 0; i < 7; ++i)
    {
        const auto file = folder.getChildFile ("old " + juce::String (i) + ".utrace");
        file.replaceWithText ("x");
        file.setLastModificationTime (now - juce::RelativeTime::hours (10 - i));
    }
    folder.getChildFile ("other.txt").replaceWithText ("kept");
    UnrealProfiler::removeOldTraces (folder.getFile(), 4);
    juce::StringArray left;
    for (const auto& file : folder.getFile().findChildFiles (juce::File::findFiles, false))
        left.add (file.getFileName());
    left.sort (false);
    EXPECT_EQ (left.joinIntoString (","), "old 3.utrace,old 4.utrace,old 5.utrace,old 6.utrace,other.txt");
}

TEST (UnrealProfilerProgramTest, FileModeLeavesAtMostFourOlderTracesBeforeTheNewOne)
{
    ScopedCommandLine commandLine ({ "--profiler=Unreal", "--profilerMode=file" });
    TestProgram program;
    const auto traces = program.getTracesDirectory (true);
    traces.deleteRecursively();
    traces.createDirectory();
    const auto now = juce::Time::getCurrentTime();
    for (int i = 0; i < 6; ++i)
    {
        const auto file = traces.getChildFile ("older " + juce::String (i) + ".utrace");
        file.replaceWithText ("x");
        file.setLastModificationTime (now - juce::RelativeTime::hours (10 - i));
    }
    ASSERT_TRUE (program.startProgram());
    auto* profiler = dynamic_cast<UnrealProfiler*> (Profiler::get());
    ASSERT_NE (profiler, nullptr);
    EXPECT_TRUE (profiler->getWriter().isChannelEnabled (TraceWriter::Channel::cpu));
    const auto traceFile = UnrealProfiler::getTraceFile();
    { const ProfilerScope scope ("Started"); }
    program.stopProgram();

    const auto left = traces.findChildFiles (juce::File::findFiles, false, "*.utrace");
    EXPECT_EQ (left.size(), 5);
    EXPECT_FALSE (traces.getChildFile ("older 1.utrace").exists());
    EXPECT_TRUE (traces.getChildFile ("older 2.utrace").exists());
    EXPECT_TRUE (traceFile.getFileName().startsWith (program.getProgramName() + " main Trace "));
    EXPECT_TRUE (traceFile.existsAsFile());
    EXPECT_EQ (linesStartingWith (summaryOf (readStream (traceFile)), "  \"Started\" count=1 ").size(), 1u);
    traces.deleteRecursively();
}

TEST (UnrealProfilerPort1981Test, SocketModeStreamsToPort1981OfTheAddress)
{
    TraceListener listener;
    ASSERT_TRUE (listener.listen (1981));
    auto received = std::async (std::launch::async, [&] { return listener.receive (20000); });
    {
        ScopedCommandLine commandLine ({ "--profiler=Unreal", "--profilerAddress=127.0.0.1" });
        const Held<Profiler> profiler (ProfilerCommandLine().createProfiler());
        auto* unreal = dynamic_cast<UnrealProfiler*> (profiler.get());
        ASSERT_NE (unreal, nullptr);
        EXPECT_TRUE (unreal->getWriter().isChannelEnabled (TraceWriter::Channel::cpu));
        EXPECT_EQ (unreal->getAddress(), "127.0.0.1");
        Profiler::set (unreal);
        { const ProfilerScope scope ("Sent"); }
        unreal->flushScopes();
        Profiler::set (nullptr);
    }
    const auto summary = summaryOf (received.get());
    EXPECT_EQ (linesStartingWith (summary, "  \"Sent\" count=1 ").size(), 1u);
    EXPECT_EQ (linesStartingWith (summary, "scopes "), (std::vector<std::string> { "scopes 1 open 0" }));
}

TEST (UnrealProfilerPort1981Test, WithoutAServerOnPort1981TheProfilerIsInstalledWithItsChannelsOff)
{
    ScopedCommandLine commandLine ({ "--profiler=Unreal", "--profilerMode=socket" });
    const Held<Profiler> profiler (ProfilerCommandLine().createProfiler());
    auto* unreal = dynamic_cast<UnrealProfiler*> (profiler.get());
    ASSERT_NE (unreal, nullptr);
    EXPECT_FALSE (unreal->getWriter().isChannelEnabled (TraceWriter::Channel::cpu));
}
