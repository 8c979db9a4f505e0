#include "Orientation.h"

namespace tov
{

TOV_BEGIN_CLASS (Orientation)
TOV_END_CLASS()

} // namespace tov
