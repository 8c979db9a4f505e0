#pragma once

#include <Tov/Standard/Buffer.h>
#include <cstdint>
#include <vector>

namespace tov::test
{

/** The bytes of a buffer, read between a lock and its unlock. */
inline std::vector<uint8_t> bytesOf (const Buffer& buffer)
{
    auto* data = static_cast<const uint8_t*> (buffer.readLock());
    std::vector<uint8_t> bytes (data, data + buffer.getSizeInBytes());
    buffer.unlockRead (data);
    return bytes;
}

} // namespace tov::test
