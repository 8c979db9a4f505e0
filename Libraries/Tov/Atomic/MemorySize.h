#pragma once

#include "PositiveInteger.h"

namespace tov
{

/** A number of bytes, shown in bytes, KB, MB or GB; the "rate" attribute makes it a size per second. */
class MemorySize : public PositiveInteger
{
public:
    TOV_DECLARE_CLASS (MemorySize, PositiveInteger)

    using PositiveInteger::PositiveInteger;

    /** "empty", "12 bytes", "1.0 KB", ... "3.5 GB": the unit that keeps the number below 1024. */
    static juce::String toScaledString (int64_t size);
    /** One decimal, the whole part grouped in threes by blanks: "1 234.5". */
    static juce::String toFixedString (double value);

    juce::String toString() const override;
    bool parseNumber (const juce::String& text, juce::String& error, const MemberSignature* signature = nullptr) override;
    bool load (ObjectImporter& importer) override;
};

} // namespace tov
