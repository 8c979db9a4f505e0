#pragma once

#include "Real.h"

namespace tov
{

/** A real from 0: a negative value is raised to 0 when set. */
class PositiveReal : public Real
{
public:
    TOV_DECLARE_CLASS (PositiveReal, Real)

    using Real::Real;

    void set (double newValue, bool notify = true) override;
};

} // namespace tov
