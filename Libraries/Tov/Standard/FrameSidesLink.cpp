#include "FrameSidesLink.h"

namespace tov
{

TOV_BEGIN_CLASS (FrameSidesLink)
TOV_END_CLASS()

} // namespace tov
