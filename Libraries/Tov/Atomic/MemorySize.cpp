#include "MemorySize.h"
#include "../Core/ObjectImporter.h"

namespace tov
{

TOV_BEGIN_CLASS (MemorySize, { "minimum", "0" })
TOV_END_CLASS()

static constexpr double kilobyte = 1024.0;

juce::String MemorySize::toFixedString (double value)
{
    const int64_t tenths = truncateToInteger64 (value * 10.0 + 0.5);
    juce::String whole (tenths / 10);
    for (int position = whole.length() - 3; position > (whole[0] == '-' ? 1 : 0); position -= 3)
        whole = whole.substring (0, position) + " " + whole.substring (position);
    return whole + "." + juce::String (std::abs (tenths % 10));
}

juce::String MemorySize::toScaledString (int64_t size)
{
    if (size == 0)
        return "empty";
    if (size < 1024)
        return juce::String (size) + " bytes";

    static const char* const units[] = { " KB", " MB" };
    double scaled = (double) size / kilobyte;
    for (auto* unit : units)
    {
        if (scaled < kilobyte)
            return toFixedString (scaled) + unit;
        scaled /= kilobyte;
    }
    return toFixedString (scaled) + " GB";
}

juce::String MemorySize::toString() const
{
    static const char* const fixedUnits[] = { "bytes", "KB", "MB", "GB" };
    const juce::String unit = getNumberUnit();
    double divisor = 1.0;
    for (auto* fixedUnit : fixedUnits)
    {
        if (unit == fixedUnit)
            return toFixedString ((double) value / divisor);
        divisor *= kilobyte;
    }

    const bool isRate = getBooleanAttribute ("rate", false);
    if (isRate && value == 0)
        return "0 MB/s";
    return toScaledString (value) + (isRate ? "/s" : "");
}

bool MemorySize::parseNumber (const juce::String& text, juce::String& error, const MemberSignature*)
{
    const juce::String digits = text.trim().toLowerCase().removeCharacters (", ");
    if (! digits.containsOnly ("+0123456789"))
    {
        error = "Could not parse MemorySize value " + digits.quoted();
        return false;
    }
    set (digits.getLargeIntValue());
    return true;
}

bool MemorySize::load (ObjectImporter& importer)
{
    int64_t newValue = 0;
    if (! importer.readInteger (newValue))
        return false;
    set (newValue);
    return true;
}

} // namespace tov
