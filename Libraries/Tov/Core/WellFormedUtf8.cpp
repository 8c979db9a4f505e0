#include "WellFormedUtf8.h"
#include <cstring>
#include <cstdint>

namespace tov
{

size_t getUtf8SequenceLength (const uint8_t* bytes, size_t available) noexcept
{
    const uint8_t lead = bytes[0];
    if (lead < 0x80)
        return 1;

    size_t length = 0;
    uint8_t secondLow = 0x80, secondHigh = 0xbf;
    if (lead >= 0xc2 && lead <= 0xdf)      length = 2;
    else if (lead == 0xe0)                 { length = 3; secondLow = 0xa0; }
    else if (lead == 0xed)                 { length = 3; secondHigh = 0x9f; }
    else if (lead >= 0xe1 && lead <= 0xef) length = 3;
    else if (lead == 0xf0)                 { length = 4; secondLow = 0x90; }
    else if (lead == 0xf4)                 { length = 4; secondHigh = 0x8f; }
    else if (lead >= 0xf1 && lead <= 0xf3) length = 4;
    else                                   return 0;

    if (available < length || bytes[1] < secondLow || bytes[1] > secondHigh)
        return 0;
    for (size_t i = 2; i < length; ++i)
        if (bytes[i] < 0x80 || bytes[i] > 0xbf)
            return 0;
    return length;
}

// The offset of the first ill-formed sequence, or numBytes when there is none.
static size_t findIllFormedSequence (const uint8_t* bytes, size_t numBytes) noexcept
{
    constexpr uint64_t topBits = 0x8080808080808080ull;
    for (size_t i = 0; i < numBytes;)
    {
        // Most text is ASCII: 32 bytes at a time, then eight, until a byte has its top bit set.
        if (numBytes - i >= 32 && ((juce::readUnaligned<uint64_t> (bytes + i) | juce::readUnaligned<uint64_t> (bytes + i + 8)
                                    | juce::readUnaligned<uint64_t> (bytes + i + 16) | juce::readUnaligned<uint64_t> (bytes + i + 24)) & topBits) == 0)
        {
            i += 32;
            continue;
        }
        if (numBytes - i >= 8 && (juce::readUnaligned<uint64_t> (bytes + i) & topBits) == 0)
        {
            i += 8;
            continue;
        }
        if (bytes[i] < 0x80)
        {
            ++i;
            continue;
        }
        const size_t length = getUtf8SequenceLength (bytes + i, numBytes - i);
        if (length == 0)
            return i;
        i += length;
    }
    return numBytes;
}

bool isWellFormedUtf8 (const void* bytes, size_t numBytes) noexcept
{
    return findIllFormedSequence (static_cast<const uint8_t*> (bytes), numBytes) == numBytes;
}

juce::String makeWellFormedUtf8 (const void* data, size_t numBytes)
{
    const auto* bytes = static_cast<const uint8_t*> (data);
    const size_t wellFormedBytes = findIllFormedSequence (bytes, numBytes);
    if (wellFormedBytes == numBytes)
        return juce::String::fromUTF8 (static_cast<const char*> (data), (int) numBytes);

    juce::MemoryOutputStream repaired (numBytes + 16);
    repaired.write (bytes, wellFormedBytes);
    for (size_t i = wellFormedBytes; i < numBytes;)
    {
        const size_t length = getUtf8SequenceLength (bytes + i, numBytes - i);
        if (length == 0)
        {
            repaired.write ("\xef\xbf\xbd", 3);
            ++i;
        }
        else
        {
            repaired.write (bytes + i, length);
            i += length;
        }
    }
    return juce::String::fromUTF8 (static_cast<const char*> (repaired.getData()), (int) repaired.getDataSize());
}

size_t getNumBytesAsUtf8 (const juce::String& text) noexcept
{
    // Names and short values, ASCII more often than not, are counted and checked
    // in one pass; longer text goes to strlen and to the check, which passes ASCII in blocks.
    const auto* bytes = reinterpret_cast<const uint8_t*> (text.toRawUTF8());
    constexpr size_t shortLength = 32;
    for (size_t i = 0; i < shortLength && bytes[i] < 0x80; ++i)
        if (bytes[i] == 0)
            return i;

    const size_t numBytes = std::strlen (reinterpret_cast<const char*> (bytes));
    if (findIllFormedSequence (bytes, numBytes) == numBytes)
        return numBytes;
    return text.getNumBytesAsUTF8();
}

// Only the bytes that JUCE counts are looked at, as everywhere else. Text
// that is well-formed already is counted and checked in one pass.
juce::String makeWellFormedUtf8 (const juce::String& text, size_t& numBytes)
{
    const char* bytes = text.toRawUTF8();
    numBytes = std::strlen (bytes);
    if (findIllFormedSequence (reinterpret_cast<const uint8_t*> (bytes), numBytes) == numBytes)
        return text;

    numBytes = text.getNumBytesAsUTF8();
    if (findIllFormedSequence (reinterpret_cast<const uint8_t*> (bytes), numBytes) == numBytes)
        return text;
    auto repaired = makeWellFormedUtf8 (bytes, numBytes);
    numBytes = std::strlen (repaired.toRawUTF8());
    return repaired;
}

juce::String makeWellFormedUtf8 (const juce::String& text)
{
    size_t numBytes;
    return makeWellFormedUtf8 (text, numBytes);
}

} // namespace tov
