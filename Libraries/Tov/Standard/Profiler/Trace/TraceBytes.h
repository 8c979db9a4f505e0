#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

namespace tov
{

/** Little-endian integers and plain texts into the byte vectors of the trace stream. */
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

inline void appendText (std::vector<uint8_t>& out, const char* text)
{
    out.insert (out.end(), text, text + std::strlen (text));
}

} // namespace tov
