#pragma once

#include "UnboundedPercentage.h"

namespace tov
{

/** A percentage held within its declared range, 0 to 100%. */
class Percentage : public UnboundedPercentage
{
public:
    TOV_DECLARE_CLASS (Percentage, UnboundedPercentage)

    using UnboundedPercentage::UnboundedPercentage;

protected:
    bool keepsToItsRange() const override { return true; }
};

} // namespace tov
