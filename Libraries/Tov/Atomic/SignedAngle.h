#pragma once

#include "Angle.h"

namespace tov
{

/** An angle from -180 to 180 degrees, shown as one number of degrees. */
class SignedAngle : public Angle
{
public:
    TOV_DECLARE_CLASS (SignedAngle, Angle)

    using Angle::Angle;

    juce::String toString() const override { return toDegreesString(); }
};

} // namespace tov
