#pragma once

#include "UnboundedPercentage.h"

namespace tov
{

/** A percentage held within its declared range, -100% to 100%. */
class SignedPercentage : public UnboundedPercentage
{
public:
    TOV_DECLARE_CLASS (SignedPercentage, UnboundedPercentage)

    using UnboundedPercentage::UnboundedPercentage;

protected:
    bool keepsToItsRange() const override { return true; }
};

} // namespace tov
