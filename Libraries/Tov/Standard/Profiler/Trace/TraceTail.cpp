#include "TraceTail.h"
#include <algorithm>

namespace tov
{

TraceTail::TraceTail (size_t requestedSize)
    : capacity (std::max<size_t> ((requestedSize + 1023) / 1024 * 1024, 0x20000))
{
}

bool TraceTail::add (const std::vector<uint8_t>& packet)
{
    if (packet.size() > capacity)
    {
        packets.clear();
        size = 0;
        return false;
    }
    while (size + packet.size() > capacity)
    {
        size -= packets.front().size();
        packets.pop_front();
    }
    packets.push_back (packet);
    size += packet.size();
    return true;
}

void TraceTail::send (const std::function<void (const std::vector<uint8_t>&)>& sendPacket) const
{
    for (const auto& packet : packets)
        sendPacket (packet);
}

} // namespace tov
