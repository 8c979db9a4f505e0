#include "UniqueIdentifier.h"

namespace tov
{

juce::String UniqueIdentifier::to64BitsHexadecimalString() const
{
    if (isNull())
        return "nil";
    return "@" + juce::String::toHexString ((juce::int64) value);
}

void UniqueIdentifier::setFrom64BitsHexadecimalString (const juce::String& text)
{
    value = (uint64_t) text.getHexValue64();
}

// juce::Uuid keeps its 16 bytes in RFC 4122 order: time_low (0-3), time_mid (4-5),
// time_hi_and_version (6-7), clock_seq_hi_and_reserved (8), clock_seq_low (9), node (10-15).
juce::Uuid UniqueIdentifier::convertToUuid() const
{
    if (isNull())
        return juce::Uuid::null();

    juce::uint8 bytes[16] = {};
    const uint64_t timeMid = value >> 48;
    bytes[4] = (juce::uint8) (timeMid >> 8);
    bytes[5] = (juce::uint8) timeMid;
    for (int i = 0; i < 6; ++i)
        bytes[10 + i] = (juce::uint8) (value >> (8 * (5 - i)));
    return makeUuidCompliantToRfc4122 (juce::Uuid (bytes));
}

bool UniqueIdentifier::isConvertibleFromUuid (const juce::Uuid& uuid)
{
    if (uuid.isNull())
        return true;
    return uuid.getTimeLow() == 0
        && uuid.getTimeHighAndVersion() == 0x4000
        && uuid.getClockSeqAndReserved() == 0x80
        && uuid.getClockSeqLow() == 0;
}

UniqueIdentifier UniqueIdentifier::convertFromUuid (const juce::Uuid& uuid, bool check)
{
    if (uuid.isNull() || (check && ! isConvertibleFromUuid (uuid)))
        return {};
    return UniqueIdentifier ((uint64_t) uuid.getNode() | ((uint64_t) uuid.getTimeMid() << 48));
}

juce::Uuid UniqueIdentifier::makeUuidCompliantToRfc4122 (const juce::Uuid& uuid)
{
    juce::uint8 bytes[16];
    memcpy (bytes, uuid.getRawData(), 16);
    bytes[6] = (juce::uint8) ((bytes[6] & 0x0f) | 0x40);
    bytes[8] = (juce::uint8) ((bytes[8] & 0x3f) | 0x80);
    return juce::Uuid (bytes);
}

} // namespace tov
