#include "Triggerable.h"

namespace tov
{

TOV_BEGIN_CLASS (Triggerable)
    TOV_VARIABLE (trigger)
TOV_END_CLASS()

} // namespace tov
