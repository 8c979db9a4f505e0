#pragma once

#include "PositiveReal.h"

namespace tov
{

/** A gain factor shown in decibels; -50 dB and below count as silence. */
class Decibel : public PositiveReal
{
public:
    TOV_DECLARE_CLASS (Decibel, PositiveReal)

    using PositiveReal::PositiveReal;

    static constexpr double silenceThreshold = -50.0;

    static double gainToDecibels (double gain);
    static double decibelsToGain (double decibels);

    /** 20 log10 of the gain with 2 decimals, never below -50: 1.0 is "0.00". */
    juce::String toString() const override;
    /** A number of decibels, optionally followed by "dB". */
    bool parseNumber (const juce::String& text, juce::String& error, const MemberSignature* signature = nullptr) override;
};

} // namespace tov
