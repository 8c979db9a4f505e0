#pragma once

#include "Angle.h"

namespace tov
{

/** An angle from 0 to 180 degrees, shown as one number of degrees. */
class PositiveAngle : public Angle
{
public:
    TOV_DECLARE_CLASS (PositiveAngle, Angle)

    using Angle::Angle;

    juce::String toString() const override { return toDegreesString(); }
};

} // namespace tov
