// tov-trace's reader on damaged and odd streams: errors, never a read out of bounds.
#include "TraceTestSupport.h"
#include <Tov/Standard/Profiler/Trace/TracePacket.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
std::vector<uint8_t> withPacket (std::vector<uint8_t> stream, const std::vector<uint8_t>& packet)
{
    stream.insert (stream.end(), packet.begin(), packet.end());
    return stream;
}

std::string errorOf (const std::vector<uint8_t>& stream)
{
    TraceStreamReader reader;
    return reader.read (stream.data(), stream.size()) ? "" : reader.getError();
}
} // namespace

TEST (TraceStreamReaderTest, AHandshakeAloneIsAnEmptyStream)
{
    EXPECT_EQ (errorOf (TracePacket::makeHandshake()), "");
    EXPECT_EQ (summaryOf (TracePacket::makeHandshake()), "threads 0\nscopes 0 open 0\ncounters 0\nframes begin=0 end=0\n");
}

TEST (TraceStreamReaderTest, AWrongMagicOrAShortStreamIsAnError)
{
    auto stream = TracePacket::makeHandshake();
    stream[0] = 0;
    EXPECT_EQ (errorOf (stream), "wrong magic number");
    EXPECT_EQ (errorOf ({ 1, 2, 3 }), "the stream is shorter than its handshake");
}

TEST (TraceStreamReaderTest, ACutPacketIsAnError)
{
    const uint8_t payload[4] = { 1, 2, 3, 4 };
    auto stream = withPacket (TracePacket::makeHandshake(), TracePacket::make (2, payload, 4));
    stream.pop_back();
    EXPECT_EQ (errorOf (stream), "a packet's size is wrong at byte 12");
    stream.resize (14);
    EXPECT_EQ (errorOf (stream), "a packet's header is cut at byte 12");
}

TEST (TraceStreamReaderTest, AnEventOfAnUnknownTypeIsAnError)
{
    const uint8_t payload[2] = { 40, 0 };
    EXPECT_EQ (errorOf (withPacket (TracePacket::makeHandshake(), TracePacket::make (2, payload, 2))),
               "an event of thread 2 has the unknown uid 20");
}

TEST (TraceStreamReaderTest, ACompressedPacketThatDoesNotDecompressIsAnError)
{
    std::vector<uint8_t> payload (500, 9);
    auto packet = TracePacket::make (2, payload.data(), payload.size());
    packet[4] = 0xff;       // claims more than the block holds
    EXPECT_EQ (errorOf (withPacket (TracePacket::makeHandshake(), packet)), "a compressed packet does not decompress at byte 12");
}

TEST (TraceStreamReaderTest, SyncPacketsAreCountedAndCarryNothing)
{
    auto stream = withPacket (TracePacket::makeHandshake(), TracePacket::makeSync());
    EXPECT_EQ (dumpOf (stream), "handshake magic=0x54524332 metadataSize=4 metadataField=2 controlPort=0xffff transportVersion=4 protocolVersion=6\n"
                                "packet thread=16383 size=4 payload=0\n");
    stream.back() = 0xbf;   // compressed
    EXPECT_EQ (errorOf (stream), "a packet's size is wrong at byte 12");
}
