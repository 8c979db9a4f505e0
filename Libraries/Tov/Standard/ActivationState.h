#pragma once

#include "../Atomic/Enumeration.h"

namespace tov
{

/** Where something that is switched on and off stands, the transitions included. */
class ActivationState : public Enumeration
{
public:
    TOV_DECLARE_CLASS (ActivationState, Enumeration)
    TOV_ELEMENTS ((inactive, 0),
                  (activating, 1),
                  (active, 2),
                  (deactivating, 3))
};

} // namespace tov
