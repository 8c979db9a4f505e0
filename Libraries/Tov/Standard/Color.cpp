#include "Color.h"
#include "ColorWithAlpha.h"
#include <juce_graphics/juce_graphics.h>
#include <algorithm>
#include <cmath>

namespace tov
{

TOV_BEGIN_CLASS (Color, { "friendlyName", "\"RGB Color\"" },
                        { "learnable", "true" },
                        { "presets", "{black = {red = 0.0, green = 0.0, blue = 0.0}, "
                                     "gray = {red = 0.5, green = 0.5, blue = 0.5}, "
                                     "white = {red = 1.0, green = 1.0, blue = 1.0}, "
                                     "red = {red = 1.0, green = 0.0, blue = 0.0}, "
                                     "green = {red = 0.0, green = 1.0, blue = 0.0}, "
                                     "blue = {red = 0.0, green = 0.0, blue = 1.0}}" })
    TOV_VARIABLE (red)
    TOV_VARIABLE (green)
    TOV_VARIABLE (blue)
TOV_END_CLASS()

// The weights and the third of a turn are the 32-bit float values of these decimals, as
// colours have always been converted here: the results must stay the same.
static const double grayRedWeight = (double) 0.31f;
static const double grayGreenWeight = (double) 0.61f;
static const double grayBlueWeight = (double) 0.08f;
static const double thirdOfATurn = (double) (1.0f / 3.0f);

Color::Color (double newRed, double newGreen, double newBlue) : red (newRed), green (newGreen), blue (newBlue)
{
}

Color::Color (const Color& other) : Object (other), red (other.red), green (other.green), blue (other.blue)
{
}

juce::Colour Color::getColour() const
{
    return juce::Colour::fromFloatRGBA ((float) getRed(), (float) getGreen(), (float) getBlue(), 1.0f);
}

void Color::set (double newRed, double newGreen, double newBlue, bool notify)
{
    red.set (newRed, notify);
    green.set (newGreen, notify);
    blue.set (newBlue, notify);
}

bool Color::isBlack() const noexcept
{
    return getRed() == 0.0 && getGreen() == 0.0 && getBlue() == 0.0;
}

Color Color::lerp (const Color& a, const Color& b, double t)
{
    return Color ((b.getRed() - a.getRed()) * t + a.getRed(),
                  (b.getGreen() - a.getGreen()) * t + a.getGreen(),
                  (b.getBlue() - a.getBlue()) * t + a.getBlue());
}

double Color::convertToGray() const noexcept
{
    return grayRedWeight * getRed() + grayGreenWeight * getGreen() + grayBlueWeight * getBlue();
}

void Color::convertToHSL (double& hue, double& saturation, double& lightness) const noexcept
{
    const double r = getRed(), g = getGreen(), b = getBlue();
    const double maximum = std::max ({ r, g, b });
    const double minimum = std::min ({ r, g, b });
    const double delta = maximum - minimum;
    lightness = (maximum + minimum) * 0.5;
    if (delta < 1e-5)
    {
        hue = saturation = 0.0;
        return;
    }

    saturation = lightness < 0.5 ? delta / (maximum + minimum) : delta / (2.0 - maximum - minimum);
    if (r == maximum)
        hue = (g - b) / delta;
    else if (g == maximum)
        hue = 2.0 + (b - r) / delta;
    else
        hue = 4.0 + (r - g) / delta;
    hue /= 6.0;
    if (hue < 0.0)
        hue += 1.0;
}

// One channel of an HSL colour: t is the channel's hue, in turns.
static double hueToChannel (double p, double q, double t)
{
    if (t < 0.0)
        t += 1.0;
    if (t > 1.0)
        t -= 1.0;
    if (t < 1.0 / 6.0)
        return p + (q - p) * 6.0 * t;
    if (t < 0.5)
        return q;
    if (t < 2.0 / 3.0)
        return p + (q - p) * (2.0 / 3.0 - t) * 6.0;
    return p;
}

Color Color::fromHSL (double hue, double saturation, double lightness)
{
    if (saturation == 0.0)
        return Color (lightness, lightness, lightness);

    const double q = lightness < 0.5 ? lightness * (1.0 + saturation) : lightness + saturation - lightness * saturation;
    const double p = 2.0 * lightness - q;
    return Color (hueToChannel (p, q, hue + thirdOfATurn),
                  hueToChannel (p, q, hue),
                  hueToChannel (p, q, hue - thirdOfATurn));
}

void Color::convertToCMYK (double& cyan, double& magenta, double& yellow, double& black) const noexcept
{
    cyan = 1.0 - getRed();
    magenta = 1.0 - getGreen();
    yellow = 1.0 - getBlue();
    black = std::min ({ cyan, magenta, yellow, 1.0 });
    if (black == 1.0)
    {
        cyan = magenta = yellow = 0.0;
        return;
    }
    cyan = (cyan - black) / (1.0 - black);
    magenta = (magenta - black) / (1.0 - black);
    yellow = (yellow - black) / (1.0 - black);
}

Color Color::fromCMYK (double cyan, double magenta, double yellow, double black)
{
    return Color (1.0 - ((1.0 - black) * cyan + black),
                  1.0 - ((1.0 - black) * magenta + black),
                  1.0 - ((1.0 - black) * yellow + black));
}

ColorWithAlpha Color::withAlpha (double alpha) const
{
    return ColorWithAlpha (getRed(), getGreen(), getBlue(), alpha);
}

juce::String Color::toString() const
{
    return getColour().toDisplayString (false);
}

bool Color::isConvertibleFrom (const Object& source) const
{
    return dynamic_cast<const Color*> (&source) != nullptr;
}

void Color::convertFrom (const Object& source)
{
    if (auto* color = dynamic_cast<const Color*> (&source))
        set (color->getRed(), color->getGreen(), color->getBlue());
}

} // namespace tov
