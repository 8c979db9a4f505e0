#pragma once

#include "../Atomic/PositiveInteger.h"

namespace tov
{

/** A port to bind: 0 to 65535, 0 letting the system choose. */
class LocalNetworkPort : public PositiveInteger
{
public:
    TOV_DECLARE_CLASS (LocalNetworkPort, PositiveInteger)

    using PositiveInteger::PositiveInteger;
};

} // namespace tov
