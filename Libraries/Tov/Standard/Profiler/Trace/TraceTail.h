#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <vector>

namespace tov
{

/** The last packets of the threads' data, up to a size, so that a connection made after the
    start receives the recent past: the oldest go to make room. A packet larger than the whole
    tail empties it and is not kept. The worker's alone. */
class TraceTail
{
public:
    /** The size is rounded up to a multiple of 1024, and is at least 0x20000. */
    explicit TraceTail (size_t requestedSize);

    /** False when the packet is larger than the tail. */
    bool add (const std::vector<uint8_t>& packet);
    void send (const std::function<void (const std::vector<uint8_t>&)>& sendPacket) const;

    size_t getCapacity() const noexcept         { return capacity; }
    size_t getSize() const noexcept             { return size; }
    size_t getNumPackets() const noexcept       { return packets.size(); }

private:
    const size_t capacity;
    size_t size = 0;
    std::deque<std::vector<uint8_t>> packets;
};

} // namespace tov
