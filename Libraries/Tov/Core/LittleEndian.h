#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tov
{

/** Little-endian integers into bytes, whatever the machine's order: the trace stream's records
    and the connections' frame headers. */
template <class Integer>
void appendLittleEndian (std::vector<uint8_t>& out, Integer value)
{
    for (size_t i = 0; i < sizeof (Integer); ++i)
        out.push_back ((uint8_t) ((uint64_t) value >> (8 * i)));
}

template <class Integer>
void writeLittleEndian (uint8_t* destination, Integer value) noexcept
{
    for (size_t i = 0; i < sizeof (Integer); ++i)
        destination[i] = (uint8_t) ((uint64_t) value >> (8 * i));
}

} // namespace tov
