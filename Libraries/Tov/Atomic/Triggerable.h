#pragma once

#include "Trigger.h"

namespace tov
{

/** The base of objects that can be fired, through their variable "trigger". */
class Triggerable : public Object
{
public:
    TOV_DECLARE_CLASS (Triggerable, Object)

    Trigger trigger;
};

} // namespace tov
