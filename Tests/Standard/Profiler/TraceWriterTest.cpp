// The trace stream's writer as a whole, read back by tov-trace's reader.
#include "TraceTestSupport.h"
#include "Support/Waiting.h"
#include <Tov/Standard/Profiler/Trace/TracePacket.h>
#include <TraceReader/TraceListener.h>
#include <gtest/gtest.h>
#include <future>
#include <thread>

using namespace tov;
using namespace tov::test;

namespace
{

/** Scopes described by event 7 on the calling thread, written at once. */
void writeScopes (TraceWriter& writer, int numScopes)
{
    writer.setChannelEnabled (TraceWriter::Channel::cpu, true);
    for (int i = 0; i < numScopes; ++i)
    {
        writer.enterScope (7, writer.getCycle());
        writer.leaveScope (writer.getCycle());
    }
    writer.flushScopes();
}

} // namespace

TEST (TraceWriterTest, UidsAreGivenFrom16InTheOrderOfFirstUse)
{
    TemporaryTrace trace;
    {
        TraceWriter writer (makeTestOptions (false));
        ASSERT_TRUE (writer.getTransport().openFile (trace.file));
        writer.setChannelEnabled (TraceWriter::Channel::cpu, true);
        writeScopes (writer, 1);
    }
    const auto types = linesStartingWith (dumpOf (trace.read()), "type ");
    ASSERT_EQ (types.size(), 5u);
    EXPECT_EQ (types[0].substr (0, 29), "type uid=16 $Trace.NewTrace f");
    EXPECT_EQ (types[1].substr (0, 33), "type uid=17 Trace.ChannelToggle f");
    EXPECT_EQ (types[2].substr (0, 32), "type uid=18 $Trace.ThreadTiming ");
    EXPECT_EQ (types[3].substr (0, 35), "type uid=19 CpuProfiler.EventBatch ");
    EXPECT_EQ (types[4].substr (0, 35), "type uid=20 Trace.ChannelAnnounce f");
}

TEST (TraceWriterTest, ATypeBeyondTheLastUidIsNotWritten)
{
    TemporaryTrace trace;
    {
        auto options = makeTestOptions (false);
        options.uidsGivenOut = 32767 - 16;      // "NewTrace" takes 32767, the last one
        TraceWriter writer (options);
        ASSERT_TRUE (writer.getTransport().openFile (trace.file));
        writer.setChannelEnabled (TraceWriter::Channel::cpu, true);
        writeScopes (writer, 3);
    }
    const auto dump = dumpOf (trace.read());
    EXPECT_EQ (linesStartingWith (dump, "type "), (std::vector<std::string> {
        "type uid=32767 $Trace.NewTrace flags=5 fixed=19 StartCycle(0,8,0x03) CycleFrequency(8,8,0x03) Endian(16,2,0x01) PointerSize(18,1,0x00)" }));
    EXPECT_EQ (linesStartingWith (dump, "important ").size(), 1u);
    EXPECT_TRUE (linesStartingWith (dump, "thread ").empty());
    EXPECT_EQ (linesStartingWith (dump, "error").size(), 0u);
}

TEST (TraceWriterTest, TheScopesOfAThreadReadBackWithTheirCycles)
{
    TemporaryTrace trace;
    {
        TraceWriter writer (makeTestOptions (false));       // its start: cycle 10
        ASSERT_TRUE (writer.getTransport().openFile (trace.file));
        writer.setChannelEnabled (TraceWriter::Channel::cpu, true);
        writer.enterScope (1, 100);                         // the thread's first buffer notes cycle 20
        writer.enterScope (2, 130);
        writer.leaveScope (1000);
        writer.leaveScope (100000);
        writer.flushScopes();
    }
    const auto dump = dumpOf (trace.read());
    EXPECT_EQ (linesStartingWith (dump, "thread "), (std::vector<std::string> {
        "thread 2 uid=18 $Trace.ThreadTiming BaseTimestamp=10",
        "thread 2 uid=19 CpuProfiler.EventBatch Data=10 bytes in 1 pieces" }));
    EXPECT_EQ (linesStartingWith (dump, "scope "), (std::vector<std::string> {
        "scope thread=2 depth=1 \"?\" spec=2 begin=130 end=1000",
        "scope thread=2 depth=0 \"?\" spec=1 begin=100 end=100000" }));
}

TEST (TraceWriterTest, AFullBatchBecomesAnEventAndTheNextCountsItsCyclesFromZero)
{
    TemporaryTrace trace;
    {
        TraceWriter writer (makeTestOptions (false));
        ASSERT_TRUE (writer.getTransport().openFile (trace.file));
        writer.setChannelEnabled (TraceWriter::Channel::cpu, true);
        // The first scope takes 4 bytes (its enter counts from 0), the others 3: the batch is
        // full at the enter of the 80th, whose leave opens the next batch, counted from 0 again.
        for (uint64_t i = 0; i < 100; ++i)
        {
            writer.enterScope (3, 1000 + 2 * i);
            writer.leaveScope (1001 + 2 * i);
        }
        writer.flushScopes();
    }
    const auto dump = dumpOf (trace.read());
    EXPECT_EQ (linesStartingWith (dump, "thread 2 uid=19"), (std::vector<std::string> {
        "thread 2 uid=19 CpuProfiler.EventBatch Data=240 bytes in 1 pieces",
        "thread 2 uid=19 CpuProfiler.EventBatch Data=62 bytes in 1 pieces" }));
    const auto scopes = linesStartingWith (dump, "scope ");
    ASSERT_EQ (scopes.size(), 100u);
    EXPECT_EQ (scopes[79], "scope thread=2 depth=0 \"?\" spec=3 begin=1158 end=1159");
    EXPECT_EQ (scopes[99], "scope thread=2 depth=0 \"?\" spec=3 begin=1198 end=1199");
}

TEST (TraceWriterTest, ADisabledChannelWritesNoScopes)
{
    TemporaryTrace trace;
    {
        TraceWriter writer (makeTestOptions (false));
        ASSERT_TRUE (writer.getTransport().openFile (trace.file));
        writer.enterScope (1, 100);
        writer.leaveScope (200);
        writer.flushScopes();
    }
    const auto dump = dumpOf (trace.read());
    EXPECT_TRUE (linesStartingWith (dump, "scope ").empty());
    EXPECT_TRUE (linesStartingWith (dump, "thread 2 uid=19").empty());
    EXPECT_TRUE (linesStartingWith (dump, "important uid=17 Trace.ChannelToggle").empty());
}

TEST (TraceWriterTest, ToggledChannelsAreAnnouncedAndToggled)
{
    TemporaryTrace trace;
    {
        TraceWriter writer (makeTestOptions (false));
        ASSERT_TRUE (writer.getTransport().openFile (trace.file));
        writer.setChannelEnabled (TraceWriter::Channel::frame, true);
        writer.setChannelEnabled (TraceWriter::Channel::frame, true);
        writer.tick();
        writer.setChannelEnabled (TraceWriter::Channel::frame, false);
    }
    EXPECT_EQ (linesStartingWith (dumpOf (trace.read()), "important uid=1"), (std::vector<std::string> {
        "important uid=16 $Trace.NewTrace StartCycle=10 CycleFrequency=1000000000 Endian=21069 PointerSize=8",
        "important uid=17 Trace.ChannelToggle Id=3523899814 IsEnabled=1",
        "important uid=18 Trace.ChannelAnnounce Id=4182440329 IsEnabled=0 ReadOnly=0 Name=\"CpuChannel\"",
        "important uid=18 Trace.ChannelAnnounce Id=1195110677 IsEnabled=0 ReadOnly=0 Name=\"GpuChannel\"",
        "important uid=18 Trace.ChannelAnnounce Id=3523899814 IsEnabled=1 ReadOnly=0 Name=\"FrameChannel\"",
        "important uid=18 Trace.ChannelAnnounce Id=2628574755 IsEnabled=0 ReadOnly=0 Name=\"CountersChannel\"",
        "important uid=17 Trace.ChannelToggle Id=3523899814 IsEnabled=0" }));
}

TEST (TraceWriterTest, ALongTextOfAThreadEventIsCutIntoPiecesThatFitTheBuffers)
{
    TemporaryTrace trace;
    {
        TraceWriter writer (makeTestOptions (false));
        ASSERT_TRUE (writer.getTransport().openFile (trace.file));
        writer.setChannelEnabled (TraceWriter::Channel::cpu, true);
        const std::vector<uint8_t> data (10000, 0x55);
        writer.writeToThread (TraceEventKind::eventBatch, nullptr, data.data(), data.size());
    }
    const auto dump = dumpOf (trace.read());
    EXPECT_EQ (linesStartingWith (dump, "thread 2 uid=19"), (std::vector<std::string> {
        "thread 2 uid=19 CpuProfiler.EventBatch Data=10000 bytes in 3 pieces" }));
    EXPECT_EQ (linesStartingWith (dump, "packet thread=2 ").size(), 3u);
}

TEST (TraceWriterTest, ANewConnectionReceivesTheTypesTheImportantEventsAndTheTail)
{
    TemporaryTrace first, second;
    TraceWriter writer (makeTestOptions (false));
    ASSERT_TRUE (writer.getTransport().openFile (first.file));
    writeScopes (writer, 5);
    writer.tick();
    writer.getTransport().close();
    ASSERT_TRUE (writer.getTransport().openFile (second.file));
    writer.tick();
    writer.getTransport().close();

    const auto firstDump = dumpOf (first.read()), secondDump = dumpOf (second.read());
    EXPECT_EQ (linesStartingWith (secondDump, "type "), linesStartingWith (firstDump, "type "));
    EXPECT_EQ (linesStartingWith (secondDump, "important "), linesStartingWith (firstDump, "important "));
    EXPECT_EQ (linesStartingWith (secondDump, "scope ").size(), 5u);
    EXPECT_EQ (linesStartingWith (secondDump, "packet thread=16383 ").size(), 1u);
    EXPECT_EQ (linesStartingWith (secondDump, "scope "), linesStartingWith (firstDump, "scope "));
}

TEST (TraceWriterTest, AfterTheStreamIsLostDataIsAcceptedAndTheTailHoldsItsEnd)
{
    TraceListener lost, later;
    ASSERT_TRUE (lost.listen (0));
    ASSERT_TRUE (later.listen (0));
    TraceWriter writer (makeTestOptions (false));
    ASSERT_TRUE (writer.getTransport().connect ("127.0.0.1", lost.getPort()));
    writer.tick();
    ASSERT_TRUE (lost.acceptAndClose (10000));

    writer.setChannelEnabled (TraceWriter::Channel::cpu, true);
    // Until the write that finds the peer gone; then on, with no stream at all.
    for (int round = 0; round < 200 && writer.getTransport().isConnected(); ++round)
    {
        writeScopes (writer, 100);
        writer.tick();
    }
    EXPECT_FALSE (writer.getTransport().isConnected());
    writer.enterScope (99, writer.getCycle());
    writer.leaveScope (writer.getCycle());
    writer.flushScopes();
    writer.tick();
    EXPECT_GT (writer.getTail().getNumPackets(), 0u);

    auto received = std::async (std::launch::async, [&] { return later.receive (10000); });
    ASSERT_TRUE (writer.getTransport().connect ("127.0.0.1", later.getPort()));
    writer.tick();
    writer.getTransport().close();
    const auto scopes = linesStartingWith (dumpOf (received.get()), "scope ");
    ASSERT_FALSE (scopes.empty());
    EXPECT_EQ (scopes.back().substr (0, 40), "scope thread=2 depth=0 \"?\" spec=99 begin");
}

TEST (TraceWriterTest, TheWorkerThreadRunsOnlyWhileTheWriterLives)
{
    const auto isWorkerRunning = []
    {
        for (const auto& task : juce::File ("/proc/self/task").findChildFiles (juce::File::findDirectories, false))
            if (task.getChildFile ("comm").loadFileAsString().trim() == "TraceWorker")
                return true;
        return false;
    };
    // The thread's name appears in /proc once it runs: polled, with a time-out of 5 s.
    const auto waitFor = [&] (bool running) { return waitUntil ([&] { return isWorkerRunning() == running; }, 5000); };
    EXPECT_TRUE (waitFor (false));
    {
        TraceWriter writer (makeTestOptions (true));
        EXPECT_TRUE (writer.hasWorkerThread());
        EXPECT_TRUE (waitFor (true));
    }
    EXPECT_FALSE (isWorkerRunning());
}

TEST (TraceWriterTest, ThreadsThatEndWriteTheirLastScopesAndEachHasItsId)
{
    TemporaryTrace trace;
    {
        TraceWriter writer (makeTestOptions (true));
        ASSERT_TRUE (writer.getTransport().openFile (trace.file));
        writer.setChannelEnabled (TraceWriter::Channel::cpu, true);
        std::vector<std::thread> threads;
        for (uint32_t t = 0; t < 3; ++t)
            threads.emplace_back ([&writer, t]
            {
                // As UnrealProfiler does: the description of each scope ("EventSpec"), then the scope.
                uint8_t specId[4] = { (uint8_t) (t + 1), 0, 0, 0 };
                const std::string name = "Thread" + std::to_string (t);
                for (uint32_t i = 0; i < 1000; ++i)
                {
                    writer.writeImportant (TraceEventKind::eventSpec, specId, name.data(), name.size());
                    writer.enterScope (t + 1, 100 * i);
                    writer.leaveScope (100 * i + 10 * (t + 1));
                }
            });
        for (auto& thread : threads)
            thread.join();
    }
    const auto summary = summaryOf (trace.read());
    EXPECT_EQ (linesStartingWith (summary, "  \""), (std::vector<std::string> {
        "  \"Thread0\" count=1000 total=10.000us mean=0.010us",
        "  \"Thread1\" count=1000 total=20.000us mean=0.020us",
        "  \"Thread2\" count=1000 total=30.000us mean=0.030us" }));
    EXPECT_EQ (linesStartingWith (summary, "scopes "), (std::vector<std::string> { "scopes 3000 open 0" }));
    EXPECT_EQ (linesStartingWith (summary, "threads "), (std::vector<std::string> { "threads 4" }));
}

TEST (TraceWriterTest, SpecIdsAreUniqueAndAThreadTakesThemInARangeOfItsOwn)
{
    TraceWriter writer (makeTestOptions (false));
    // Before its state is made (by its first scope), a thread takes its id alone.
    EXPECT_EQ (writer.takeSpecId(), 1u);
    writer.enterScope (1, writer.getCycle());
    EXPECT_EQ (writer.takeSpecId(), 2u);
    uint32_t ofOtherThread = 0, nextOfOtherThread = 0;
    std::thread ([&]
    {
        ofOtherThread = writer.takeSpecId();
        writer.enterScope (ofOtherThread, writer.getCycle());
        nextOfOtherThread = writer.takeSpecId();
    }).join();
    // The first thread's range is 2 to 257.
    EXPECT_EQ (ofOtherThread, 2 + TraceWriter::specIdsPerRange);
    EXPECT_EQ (nextOfOtherThread, 3 + TraceWriter::specIdsPerRange);
    EXPECT_EQ (writer.takeSpecId(), 3u);
}

TEST (TraceWriterTest, TheEventSpecsOfABatchGoOutWithItAndInTheOrderOfTheirThread)
{
    TemporaryTrace trace;
    std::string dumpBeforeTheBatch;
    {
        TraceWriter writer (makeTestOptions (false));
        ASSERT_TRUE (writer.getTransport().openFile (trace.file));
        writer.setChannelEnabled (TraceWriter::Channel::cpu, true);
        const auto writeSpec = [&writer] (uint8_t id, const std::string& name)
        {
            const uint8_t fixed[4] = { id, 0, 0, 0 };
            writer.writeImportantOfScopes (TraceEventKind::eventSpec, fixed, name.data(), name.size());
        };
        writeSpec (1, "First");                 // the thread has no state yet: written at once
        writer.enterScope (1, 100);
        writeSpec (2, "Second");                // held with the batch
        writer.enterScope (2, 110);
        std::thread ([&writer] { writer.tick(); }).join();     // a tick of this thread would write what it holds
        dumpBeforeTheBatch = dumpOf (trace.read());
        writeSpec (3, "Third");
        writer.writeThreadInfo ("Named", 5, 0); // what the thread holds goes first
        writeSpec (4, "Fourth");
        writer.leaveScope (120);
        writer.leaveScope (130);
        writer.flushScopes();
    }
    EXPECT_EQ (linesStartingWith (dumpBeforeTheBatch, "important uid=18"),
               (std::vector<std::string> { "important uid=18 CpuProfiler.EventSpec Id=1 Name=\"First\"" }));
    EXPECT_TRUE (linesStartingWith (dumpBeforeTheBatch, "thread 2 uid=22").empty());
    const auto dump = dumpOf (trace.read());
    std::vector<std::string> specsAndThreadInfo;
    for (const auto& line : linesStartingWith (dump, "important uid="))
        if (line.find ("EventSpec") != std::string::npos || line.find ("ThreadInfo") != std::string::npos)
            specsAndThreadInfo.push_back (line);
    EXPECT_EQ (specsAndThreadInfo, (std::vector<std::string> {
        "important uid=18 CpuProfiler.EventSpec Id=1 Name=\"First\"",
        "important uid=18 CpuProfiler.EventSpec Id=2 Name=\"Second\"",
        "important uid=18 CpuProfiler.EventSpec Id=3 Name=\"Third\"",
        "important uid=21 $Trace.ThreadInfo ThreadId=2 SystemId=5 SortHint=0 Name=\"Named\"",
        "important uid=18 CpuProfiler.EventSpec Id=4 Name=\"Fourth\"" }));
    EXPECT_EQ (linesStartingWith (dump, "scope "), (std::vector<std::string> {
        "scope thread=2 depth=1 \"Second\" spec=2 begin=110 end=120",
        "scope thread=2 depth=0 \"First\" spec=1 begin=100 end=130" }));
}
