#include "Decibel.h"
#include <cmath>

namespace tov
{

TOV_BEGIN_CLASS (Decibel, { "unit", "\"dB\"" }, { "presets", "{identity = 1.0, mute = 0.0}" })
TOV_END_CLASS()

double Decibel::gainToDecibels (double gain)
{
    return gain > 0.0 ? std::max (silenceThreshold, 20.0 * std::log10 (gain)) : silenceThreshold;
}

double Decibel::decibelsToGain (double decibels)
{
    return decibels > silenceThreshold ? std::pow (10.0, decibels * 0.05) : 0.0;
}

juce::String Decibel::toString() const
{
    return juce::String (gainToDecibels (value), 2);
}

bool Decibel::parseNumber (const juce::String& text, juce::String& error, const MemberSignature*)
{
    juce::String decibels = text.trim().toLowerCase();
    if (decibels.endsWith ("db"))
        decibels = decibels.dropLastCharacters (2).trimEnd();
    if (decibels.isEmpty() || ! decibels.containsOnly ("+-0123456789.e"))
    {
        error = "Could not parse Decibel value " + text.trim().quoted();
        return false;
    }
    setNumber (decibelsToGain (decibels.getDoubleValue()));
    return true;
}

} // namespace tov
