#pragma once

#include "Real.h"

namespace tov
{

/** A length in meters. */
class Meters : public Real
{
public:
    TOV_DECLARE_CLASS (Meters, Real)

    using Real::Real;

    double getMinimalStep() const override           { return 0.000001; }
    double getSmallStep() const override             { return 0.01; }

    /** "1 km 200 m 50 cm": parts finer than the precision are left out; precision 0 shows all. */
    juce::String toUserFriendlyString (double precision) const;
};

} // namespace tov
