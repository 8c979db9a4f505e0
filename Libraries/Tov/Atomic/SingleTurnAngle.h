#pragma once

#include "Angle.h"

namespace tov
{

/** An angle from 0 to 360 degrees, shown as one number of degrees. */
class SingleTurnAngle : public Angle
{
public:
    TOV_DECLARE_CLASS (SingleTurnAngle, Angle)

    using Angle::Angle;

    juce::String toString() const override { return toDegreesString(); }
};

} // namespace tov
