#pragma once

#include "Real.h"

namespace tov
{

/** A duration in seconds, shown and typed in words: "1 day 2 hr", "2 weeks", "90 ms". */
class RelativeTime : public Real
{
public:
    TOV_DECLARE_CLASS (RelativeTime, Real)

    using Real::Real;

    /** "+oo", "-oo", or JUCE's description, "0" for no time. */
    juce::String toString() const override;
    /** Amounts followed by unit words or their abbreviations; a bare number is seconds. */
    bool parseNumber (const juce::String& text, juce::String& error, const MemberSignature* signature = nullptr) override;

    /** The seconds that a text in the form of parseNumber stands for. */
    static double parseDuration (const juce::String& text);
};

} // namespace tov
