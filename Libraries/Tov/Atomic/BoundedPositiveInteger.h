#pragma once

#include "BoundedInteger.h"
#include "PositiveInteger.h"

namespace tov
{

/** A positive integer that stays below a bound of its own, as an index below a count; a bound
    of 0 means none. Value and bound compare as unsigned numbers. */
class BoundedPositiveInteger : public BoundedInteger<PositiveInteger, true>
{
public:
    TOV_DECLARE_CLASS (BoundedPositiveInteger, PositiveInteger)

    using BoundedInteger::BoundedInteger;
};

} // namespace tov
