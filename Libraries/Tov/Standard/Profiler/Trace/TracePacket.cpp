#include "TracePacket.h"
#include "TraceBytes.h"
#include <lz4.h>

namespace tov
{

std::vector<uint8_t> TracePacket::make (uint16_t threadId, const uint8_t* payload, size_t size)
{
    std::vector<uint8_t> packet;
    if (size <= largestUncompressedPayload)
    {
        appendLittleEndian<uint16_t> (packet, (uint16_t) (size + 4));
        appendLittleEndian<uint16_t> (packet, (uint16_t) (threadId & 0x3fff));
        packet.insert (packet.end(), payload, payload + size);
        return packet;
    }
    packet.resize (6 + (size_t) LZ4_compressBound ((int) size));
    const int compressedSize = LZ4_compress_fast (reinterpret_cast<const char*> (payload), reinterpret_cast<char*> (packet.data() + 6),
                                                  (int) size, (int) packet.size() - 6, 1);
    packet.resize (6 + (size_t) compressedSize);
    writeLittleEndian<uint16_t> (packet.data(), (uint16_t) (compressedSize + 6));
    writeLittleEndian<uint16_t> (packet.data() + 2, (uint16_t) ((threadId & 0x3fff) | 0x8000));
    writeLittleEndian<uint16_t> (packet.data() + 4, (uint16_t) size);
    return packet;
}

std::vector<uint8_t> TracePacket::makeSync()
{
    return { 4, 0, (uint8_t) (syncThreadId & 0xff), (uint8_t) (syncThreadId >> 8) };
}

// Magic, the size of the metadata (4), the metadata field (2) and the control port (none),
// the transport version (4) and the protocol version (6).
std::vector<uint8_t> TracePacket::makeHandshake()
{
    std::vector<uint8_t> handshake;
    appendLittleEndian<uint32_t> (handshake, 0x54524332);
    appendLittleEndian<uint16_t> (handshake, 4);
    appendLittleEndian<uint16_t> (handshake, 2);
    appendLittleEndian<uint16_t> (handshake, 0xffff);
    handshake.push_back (4);
    handshake.push_back (6);
    return handshake;
}

} // namespace tov
