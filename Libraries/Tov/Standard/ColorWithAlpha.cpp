#include "ColorWithAlpha.h"
#include <juce_graphics/juce_graphics.h>

namespace tov
{

TOV_BEGIN_CLASS (ColorWithAlpha, { "friendlyName", "\"RGBA Color\"" },
                                 { "learnable", "true" },
                                 { "presets", "{black = {red = 0.0, green = 0.0, blue = 0.0, alpha = 1.0}, "
                                              "gray = {red = 0.5, green = 0.5, blue = 0.5, alpha = 1.0}, "
                                              "white = {red = 1.0, green = 1.0, blue = 1.0, alpha = 1.0}, "
                                              "red = {red = 1.0, green = 0.0, blue = 0.0, alpha = 1.0}, "
                                              "green = {red = 0.0, green = 1.0, blue = 0.0, alpha = 1.0}, "
                                              "blue = {red = 0.0, green = 0.0, blue = 1.0, alpha = 1.0}}" })
    TOV_VARIABLE (alpha)
TOV_END_CLASS()

ColorWithAlpha::ColorWithAlpha() : alpha (1.0)
{
}

ColorWithAlpha::ColorWithAlpha (double newRed, double newGreen, double newBlue, double newAlpha)
    : Color (newRed, newGreen, newBlue), alpha (newAlpha)
{
}

ColorWithAlpha::ColorWithAlpha (const ColorWithAlpha& other) : Color (other), alpha (other.alpha)
{
}

void ColorWithAlpha::set (double newRed, double newGreen, double newBlue, double newAlpha, bool notify)
{
    Color::set (newRed, newGreen, newBlue, notify);
    alpha.set (newAlpha, notify);
}

juce::Colour ColorWithAlpha::getColourWithAlpha() const
{
    return juce::Colour::fromFloatRGBA ((float) getRed(), (float) getGreen(), (float) getBlue(), (float) getAlpha());
}

void ColorWithAlpha::convertFrom (const Object& source)
{
    Color::convertFrom (source);
    if (auto* withAlpha = dynamic_cast<const ColorWithAlpha*> (&source))
        alpha.set (withAlpha->getAlpha());
    else if (dynamic_cast<const Color*> (&source) != nullptr)
        alpha.set (1.0);
}

} // namespace tov
