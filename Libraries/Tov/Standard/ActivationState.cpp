#include "ActivationState.h"

namespace tov
{

TOV_BEGIN_CLASS (ActivationState)
TOV_END_CLASS()

} // namespace tov
