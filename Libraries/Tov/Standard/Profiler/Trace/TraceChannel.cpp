#include "TraceChannel.h"
#include <cstring>

namespace tov
{

uint32_t TraceChannel::getHash (juce::StringRef name) noexcept
{
    const char* text = name.text.getAddress();
    size_t length = std::strlen (text);
    constexpr const char* suffix = "Channel";
    constexpr size_t suffixLength = 7;
    if (length >= suffixLength && std::strncmp (text + length - suffixLength, suffix, suffixLength) == 0)
        length -= suffixLength;
    if (length > 0 && (text[length - 1] == 's' || text[length - 1] == 'S'))
        --length;

    uint32_t hash = 0x811c9dc5;
    for (size_t i = 0; i < length; ++i)
    {
        const char c = text[i];
        hash ^= (uint8_t) (c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
        hash *= 16777619u;
    }
    return hash;
}

} // namespace tov
