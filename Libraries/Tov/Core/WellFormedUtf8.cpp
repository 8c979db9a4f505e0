#include "WellFormedUtf8.h"

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

juce::String makeWellFormedUtf8 (const void* data, size_t numBytes)
{
    const auto* bytes = static_cast<const uint8_t*> (data);
    juce::MemoryOutputStream repaired (numBytes + 16);
    for (size_t i = 0; i < numBytes;)
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

juce::String makeWellFormedUtf8 (const juce::String& text)
{
    const auto* bytes = reinterpret_cast<const uint8_t*> (text.toRawUTF8());
    const size_t numBytes = text.getNumBytesAsUTF8();
    for (size_t i = 0; i < numBytes;)
    {
        const size_t length = getUtf8SequenceLength (bytes + i, numBytes - i);
        if (length == 0)
            return makeWellFormedUtf8 (bytes, numBytes);
        i += length;
    }
    return text;
}

} // namespace tov
