#include "ColorShift.h"

namespace tov
{

TOV_BEGIN_CLASS (ColorShift)
    TOV_VARIABLE (cyanRed)
    TOV_VARIABLE (magentaGreen)
    TOV_VARIABLE (yellowBlue)
    TOV_VARIABLE (multiplier, { "default", "1.0" })
TOV_END_CLASS()

ColorShift::ColorShift() : multiplier (1.0)
{
}

ColorShift::ColorShift (const ColorShift& other)
    : Object (other), cyanRed (other.cyanRed), magentaGreen (other.magentaGreen), yellowBlue (other.yellowBlue), multiplier (other.multiplier)
{
}

void ColorShift::set (double newCyanRed, double newMagentaGreen, double newYellowBlue, double newMultiplier, bool notify)
{
    cyanRed.set (newCyanRed, notify);
    magentaGreen.set (newMagentaGreen, notify);
    yellowBlue.set (newYellowBlue, notify);
    multiplier.set (newMultiplier, notify);
}

bool ColorShift::loadVariable (ObjectImporter& importer, juce::StringRef name)
{
    if (name == juce::StringRef ("linked"))
        return true;
    return Object::loadVariable (importer, name);
}

} // namespace tov
