#pragma once

#include "../Atomic/Percentage.h"

namespace juce { class Colour; }

namespace tov
{

class ColorWithAlpha;

/** An RGB colour of three channels from 0 to 1, with the conversions that editors and
    light fixtures need (grey, HSL, CMYK). */
class Color : public Object
{
public:
    TOV_DECLARE_CLASS (Color, Object)

    Color() = default;
    Color (double red, double green, double blue);
    Color (const Color& other);
    Color& operator= (const Color& other)                 { other.copyTo (*this); return *this; }

    double getRed() const noexcept                        { return red.get(); }
    double getGreen() const noexcept                      { return green.get(); }
    double getBlue() const noexcept                       { return blue.get(); }
    /** The colour with 8 bits per channel and an opaque alpha. */
    juce::Colour getColour() const;
    void set (double newRed, double newGreen, double newBlue, bool notify = true);

    /** All three channels exactly 0. */
    bool isBlack() const noexcept;
    /** Per channel (b - a) * t + a. */
    static Color lerp (const Color& a, const Color& b, double t);
    /** 0.31 red + 0.61 green + 0.08 blue, with those weights as 32-bit floats. */
    double convertToGray() const noexcept;
    /** Hue from 0 to 1 (a whole turn), saturation and lightness. */
    void convertToHSL (double& hue, double& saturation, double& lightness) const noexcept;
    static Color fromHSL (double hue, double saturation, double lightness);
    void convertToCMYK (double& cyan, double& magenta, double& yellow, double& black) const noexcept;
    static Color fromCMYK (double cyan, double magenta, double yellow, double black);
    ColorWithAlpha withAlpha (double alpha) const;

    /** "RRGGBB" in hexadecimal, as juce::Colour shows it. */
    juce::String toString() const override;

    /** Any colour converts to this one; alpha, if the source has one, is dropped. */
    bool isConvertibleFrom (const Object& source) const override;
    void convertFrom (const Object& source) override;

protected:
    Percentage red;
    Percentage green;
    Percentage blue;
};

} // namespace tov
