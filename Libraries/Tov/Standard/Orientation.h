#pragma once

#include "../Atomic/Enumeration.h"

namespace tov
{

/** Which way a row of things runs. */
class Orientation : public Enumeration
{
public:
    TOV_DECLARE_CLASS (Orientation, Enumeration)
    TOV_ELEMENTS ((horizontal, 0),
                  (vertical, 1))
};

} // namespace tov
