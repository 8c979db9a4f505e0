// The pieces of the trace stream's writer on their own: channels, packets, event types, the
// tail, the buffer pool, the important events and the transport.
#include "TraceTestSupport.h"
#include "Support/FreePort.h"
#include <Tov/Standard/Profiler/Trace/TraceBuffer.h>
#include <Tov/Standard/Profiler/Trace/TraceChannel.h>
#include <Tov/Standard/Profiler/Trace/TraceEventTypes.h>
#include <Tov/Standard/Profiler/Trace/TraceImportantEvents.h>
#include <Tov/Standard/Profiler/Trace/TracePacket.h>
#include <Tov/Standard/Profiler/Trace/TraceTail.h>
#include <Tov/Standard/Profiler/Trace/TraceTransport.h>
#include <TraceReader/TraceListener.h>
#include <gtest/gtest.h>
#include <lz4.h>
#include <future>
#include <thread>

using namespace tov;
using namespace tov::test;

TEST (TraceChannelTest, TheIdIsFnv1aOfTheNameInLowerCaseWithoutChannelAndAFinalS)
{
    EXPECT_EQ (TraceChannel::getHash ("CpuChannel"), 0xf94af989u);
    EXPECT_EQ (TraceChannel::getHash ("GpuChannel"), 0x473bf115u);
    EXPECT_EQ (TraceChannel::getHash ("FrameChannel"), 0xd20a71a6u);
    EXPECT_EQ (TraceChannel::getHash ("CountersChannel"), 0x9cacde23u);
    EXPECT_EQ (TraceChannel::getHash ("Trace"), 0x813d75aeu);
}

TEST (TraceChannelTest, CaseAndTheDroppedEndingsGiveTheSameId)
{
    EXPECT_EQ (TraceChannel::getHash ("cpu"), 0xf94af989u);
    EXPECT_EQ (TraceChannel::getHash ("CPUS"), 0xf94af989u);
    EXPECT_EQ (TraceChannel::getHash ("CpusChannel"), 0xf94af989u);
    EXPECT_NE (TraceChannel::getHash ("Cpux"), 0xf94af989u);
}

TEST (TraceChannelTest, OnlyAChangeOfStateCounts)
{
    TraceChannel channel ("CpuChannel");
    EXPECT_FALSE (channel.isEnabled());
    EXPECT_TRUE (channel.setEnabled (true));
    EXPECT_FALSE (channel.setEnabled (true));
    EXPECT_TRUE (channel.isEnabled());
    EXPECT_EQ (channel.getId(), 0xf94af989u);
}

//==============================================================================
TEST (TracePacketTest, APayloadOf384BytesGoesUncompressed)
{
    const std::vector<uint8_t> payload (384, 7);
    const auto packet = TracePacket::make (5, payload.data(), payload.size());
    ASSERT_EQ (packet.size(), 388u);
    EXPECT_EQ (packet[0], 388 & 0xff);
    EXPECT_EQ (packet[1], 388 >> 8);
    EXPECT_EQ (packet[2], 5);
    EXPECT_EQ (packet[3], 0);
    EXPECT_EQ (std::vector<uint8_t> (packet.begin() + 4, packet.end()), payload);
}

TEST (TracePacketTest, APayloadOf385BytesGoesThroughLz4)
{
    const std::vector<uint8_t> payload (385, 7);
    const auto packet = TracePacket::make (5, payload.data(), payload.size());
    ASSERT_GT (packet.size(), 6u);
    EXPECT_EQ (packet[0] | (packet[1] << 8), (int) packet.size());
    EXPECT_EQ (packet[2] | (packet[3] << 8), 0x8005);
    EXPECT_EQ (packet[4] | (packet[5] << 8), 385);
    std::vector<uint8_t> decompressed (385);
    EXPECT_EQ (LZ4_decompress_safe (reinterpret_cast<const char*> (packet.data() + 6), reinterpret_cast<char*> (decompressed.data()),
                                    (int) packet.size() - 6, 385), 385);
    EXPECT_EQ (decompressed, payload);
}

TEST (TracePacketTest, TheHandshakeAndTheSyncPacketAreTheirBytes)
{
    EXPECT_EQ (TracePacket::makeHandshake(), (std::vector<uint8_t> { 0x32, 0x43, 0x52, 0x54, 4, 0, 2, 0, 0xff, 0xff, 4, 6 }));
    EXPECT_EQ (TracePacket::makeSync(), (std::vector<uint8_t> { 4, 0, 0xff, 0x3f }));
}

//==============================================================================
TEST (TraceEventTypesTest, ADescriptionIsItsRecord)
{
    std::vector<uint8_t> record;
    TraceEventType::get (TraceEventKind::threadTiming).appendDescription (record, 17);
    const std::string names = "$TraceThreadTimingBaseTimestamp";
    std::vector<uint8_t> expected { 0, 0, (uint8_t) (6 + 8 + names.size()), 0, 17, 0, 1, 4, 6, 12,
                                    0, 0, 0, 0, 8, 0, 0x03, 13 };
    expected.insert (expected.end(), names.begin(), names.end());
    EXPECT_EQ (record, expected);
}

TEST (TraceEventTypesTest, TheStoredUidIsTwiceTheUidWithBit0SetFrom128)
{
    EXPECT_EQ (getStoredTraceUid (16), 32);
    EXPECT_EQ (getStoredTraceUid (127), 254);
    EXPECT_EQ (getStoredTraceUid (128), 257);
    EXPECT_EQ (getStoredTraceUid (1000), 2001);
}

TEST (TraceEventTypesTest, FixedSizesAndFlagsAreThoseOfTheTable)
{
    EXPECT_EQ (TraceEventType::get (TraceEventKind::newTrace).fixedSize, 19);
    EXPECT_EQ (TraceEventType::get (TraceEventKind::newTrace).flags, 5);
    EXPECT_EQ (TraceEventType::get (TraceEventKind::threadInfo).flags, 7);
    EXPECT_EQ (TraceEventType::get (TraceEventKind::eventBatch).flags, 6);
    EXPECT_EQ (TraceEventType::get (TraceEventKind::counterSetValueFloat).fixedSize, 18);
    EXPECT_EQ (TraceEventType::get (TraceEventKind::counterSetValueFloat).fields[1].typeCode, 0x43);
    EXPECT_EQ (TraceEventType::get (TraceEventKind::beginFrame).flags, 0);
}

//==============================================================================
TEST (TraceTailTest, TheSizeIsAMultipleOf1024AndAtLeast0x20000)
{
    EXPECT_EQ (TraceTail (0x400000).getCapacity(), 0x400000u);
    EXPECT_EQ (TraceTail (0x400001).getCapacity(), 0x400400u);
    EXPECT_EQ (TraceTail (100).getCapacity(), 0x20000u);
}

TEST (TraceTailTest, TheOldestPacketsGoToMakeRoom)
{
    TraceTail tail (0);
    for (uint8_t i = 0; i < 5; ++i)
        EXPECT_TRUE (tail.add (std::vector<uint8_t> (0x8000, i)));
    EXPECT_EQ (tail.getNumPackets(), 4u);
    std::vector<uint8_t> firstBytes;
    tail.send ([&] (const std::vector<uint8_t>& packet) { firstBytes.push_back (packet[0]); });
    EXPECT_EQ (firstBytes, (std::vector<uint8_t> { 1, 2, 3, 4 }));
}

TEST (TraceTailTest, APacketLargerThanTheTailEmptiesIt)
{
    TraceTail tail (0);
    EXPECT_TRUE (tail.add (std::vector<uint8_t> (10, 1)));
    EXPECT_FALSE (tail.add (std::vector<uint8_t> (0x20001, 2)));
    EXPECT_EQ (tail.getNumPackets(), 0u);
    EXPECT_EQ (tail.getSize(), 0u);
}

//==============================================================================
TEST (TraceBufferPoolTest, BuffersAreCutFromBlocksOf65536Bytes)
{
    TraceBufferPool pool;
    std::vector<TraceBuffer*> taken;
    for (int i = 0; i < 15; ++i)
        taken.push_back (pool.take());
    EXPECT_EQ (pool.getNumBlocks(), 1u);
    taken.push_back (pool.take());
    EXPECT_EQ (pool.getNumBlocks(), 2u);
    pool.giveBack (taken.back());
    EXPECT_EQ (pool.take(), taken.back());
    EXPECT_EQ (reinterpret_cast<uintptr_t> (taken.front()) % TraceBuffer::size, 0u);
}

//==============================================================================
namespace
{
std::vector<uint8_t> drainAll (TraceImportantEvents& events, bool keepInCache = true)
{
    std::vector<uint8_t> drained;
    events.drain ([&] (const uint8_t* data, size_t size) { drained.insert (drained.end(), data, data + size); }, keepInCache);
    return drained;
}
} // namespace

TEST (TraceImportantEventsTest, EventsComeOutInOrderAcrossPagesAndLargeOnesGetAPageOfTheirOwn)
{
    TraceImportantEvents events;
    std::vector<uint8_t> written;
    for (int i = 0; i < 1000; ++i)
    {
        const std::vector<uint8_t> event ((size_t) (i == 150 ? TraceImportantEvents::pageSize + 1000 : 1 + i % 37), (uint8_t) i);
        events.write (event.data(), event.size());
        written.insert (written.end(), event.begin(), event.end());
    }
    EXPECT_EQ (drainAll (events), written);
    EXPECT_TRUE (drainAll (events).empty());
}

TEST (TraceImportantEventsTest, TheCacheHoldsWhatWasDrained)
{
    TraceImportantEvents events;
    const std::vector<uint8_t> first (700, 1), second (700, 2);
    events.write (first.data(), first.size());
    drainAll (events);
    events.write (second.data(), second.size());
    drainAll (events);
    events.write (first.data(), first.size());
    drainAll (events, false);

    std::vector<uint8_t> cached;
    events.sendCache ([&] (const uint8_t* data, size_t size) { cached.insert (cached.end(), data, data + size); });
    std::vector<uint8_t> expected (first);
    expected.insert (expected.end(), second.begin(), second.end());
    EXPECT_EQ (cached, expected);
}

TEST (TraceImportantEventsTest, ThreadsWritingAtOnceLoseNothing)
{
    TraceImportantEvents events;
    constexpr int numThreads = 4, eventsPerThread = 2000;
    std::vector<std::thread> threads;
    for (int t = 0; t < numThreads; ++t)
        threads.emplace_back ([&events, t]
        {
            for (int i = 0; i < eventsPerThread; ++i)
            {
                const uint8_t event[3] = { (uint8_t) t, (uint8_t) i, (uint8_t) (i >> 8) };
                events.write (event, sizeof (event));
            }
        });
    std::vector<uint8_t> drained;
    for (int round = 0; round < 50; ++round)
    {
        const auto part = drainAll (events);
        drained.insert (drained.end(), part.begin(), part.end());
    }
    for (auto& thread : threads)
        thread.join();
    const auto rest = drainAll (events);
    drained.insert (drained.end(), rest.begin(), rest.end());

    ASSERT_EQ (drained.size(), (size_t) (numThreads * eventsPerThread * 3));
    std::vector<int> nextOfThread (numThreads, 0);
    for (size_t i = 0; i < drained.size(); i += 3)
    {
        const int thread = drained[i], index = drained[i + 1] | (drained[i + 2] << 8);
        ASSERT_LT (thread, numThreads);
        EXPECT_EQ (index, nextOfThread[(size_t) thread]++);     // each thread's events in its order
    }
}

//==============================================================================
TEST (TraceTransportTest, ASecondConnectionWhileAHandleIsOpenIsRefused)
{
    TraceListener first, second;
    ASSERT_TRUE (first.listen (0));
    ASSERT_TRUE (second.listen (0));
    TraceTransport transport;
    ASSERT_TRUE (transport.connect ("127.0.0.1", first.getPort()));
    EXPECT_TRUE (transport.takePendingHandle());
    ASSERT_TRUE (transport.connect ("127.0.0.1", second.getPort()));
    EXPECT_FALSE (transport.takePendingHandle());
    EXPECT_TRUE (transport.isConnected());

    auto refused = std::async (std::launch::async, [&] { return second.receive (10000); });
    auto received = std::async (std::launch::async, [&] { return first.receive (10000); });
    const uint8_t bytes[3] = { 1, 2, 3 };
    EXPECT_TRUE (transport.send (bytes, sizeof (bytes)));
    transport.close();
    EXPECT_TRUE (refused.get().empty());
    EXPECT_EQ (received.get(), (std::vector<uint8_t> { 1, 2, 3 }));
}

TEST (TraceTransportTest, AFileThatCannotBeMadeOrAPortWithoutListenerFails)
{
    TraceTransport transport;
    EXPECT_FALSE (transport.openFile (juce::File ("/nonexistent-folder/trace.utrace")));
    const auto port = (uint16_t) findFreePort();
    EXPECT_FALSE (transport.connect ("127.0.0.1", port));
    EXPECT_FALSE (transport.takePendingHandle());
    EXPECT_FALSE (transport.send ("x", 1));
}
