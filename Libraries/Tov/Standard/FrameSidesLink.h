#pragma once

#include "../Atomic/Enumeration.h"

namespace tov
{

/** Which sides of a frame (margins, borders, crops) move together when one of them is edited. */
class FrameSidesLink : public Enumeration
{
public:
    TOV_DECLARE_CLASS (FrameSidesLink, Enumeration)
    TOV_ELEMENTS ((none, 0, description ("us-en", "Each side on its own")),
                  (horizontal, 1, description ("us-en", "Left and right together")),
                  (vertical, 2, description ("us-en", "Top and bottom together")),
                  (all, 3, description ("us-en", "All four sides together")))
};

} // namespace tov
