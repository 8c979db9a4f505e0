#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tov
{

/** The framing of the trace stream, after its handshake: packets of a size (2 bytes, the
    header's included) and a thread id (2 bytes), then the payload. A payload above 384 bytes is
    compressed by LZ4: the thread id then has bit 15 set, and 2 more bytes give the size before
    compression. */
struct TracePacket
{
    static constexpr size_t largestUncompressedPayload = 384;
    static constexpr uint16_t eventTypesThreadId = 0;
    static constexpr uint16_t importantEventsThreadId = 1;
    static constexpr uint16_t firstThreadId = 2;
    static constexpr uint16_t syncThreadId = 0x3fff;

    static std::vector<uint8_t> make (uint16_t threadId, const uint8_t* payload, size_t size);
    static std::vector<uint8_t> makeSync();
    static std::vector<uint8_t> makeHandshake();
};

} // namespace tov
