#include "UnboundedPercentage.h"

namespace tov
{

TOV_BEGIN_CLASS (UnboundedPercentage, { "unit", "\"%\"" },
                                      { "minimum", "0.0" },
                                      { "maximum", "1.0" },
                                      { "presets", "{minus100 = -1.0, minus50 = -0.5, 0 = 0.0, 50 = 0.5, 100 = 1.0}" })
TOV_END_CLASS()

bool UnboundedPercentage::isBounded() const
{
    return keepsToItsRange() && Real::isBounded();
}

double UnboundedPercentage::makeNumberValid (double number) const
{
    return keepsToItsRange() ? Real::makeNumberValid (number) : number;
}

juce::String UnboundedPercentage::toString() const
{
    return juce::String (value * 100.0, 3);
}

bool UnboundedPercentage::parseNumber (const juce::String& text, juce::String& error, const MemberSignature*)
{
    juce::String percent = text.trim();
    if (percent.endsWithChar ('%'))
        percent = percent.dropLastCharacters (1).trim();
    setNumber (makeNumberValid (percent.getDoubleValue() / 100.0));
    return true;
}

} // namespace tov
