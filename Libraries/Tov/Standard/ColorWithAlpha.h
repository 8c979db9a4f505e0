#pragma once

#include "Color.h"

namespace tov
{

/** A colour with an opacity, 1 (opaque) for a new one. */
class ColorWithAlpha : public Color
{
public:
    TOV_DECLARE_CLASS (ColorWithAlpha, Color)

    ColorWithAlpha();
    ColorWithAlpha (double red, double green, double blue, double alpha = 1.0);
    ColorWithAlpha (const ColorWithAlpha& other);
    ColorWithAlpha& operator= (const ColorWithAlpha& other)  { other.copyTo (*this); return *this; }

    double getAlpha() const noexcept                      { return alpha.get(); }
    void setAlpha (double newAlpha, bool notify = true)   { alpha.set (newAlpha, notify); }
    void set (double newRed, double newGreen, double newBlue, double newAlpha, bool notify = true);
    using Color::set;
    /** The colour with 8 bits per channel, alpha included. */
    juce::Colour getColourWithAlpha() const;

    /** A colour without alpha comes in opaque. */
    void convertFrom (const Object& source) override;

private:
    Percentage alpha;
};

} // namespace tov
