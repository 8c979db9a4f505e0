#pragma once

#include "../Atomic/PositiveIntegerRanges.h"

namespace tov
{

/** A port to reach: 1 to 65535. */
class NetworkPort : public StrictlyPositiveInteger
{
public:
    TOV_DECLARE_CLASS (NetworkPort, StrictlyPositiveInteger)

    using StrictlyPositiveInteger::StrictlyPositiveInteger;
};

} // namespace tov
