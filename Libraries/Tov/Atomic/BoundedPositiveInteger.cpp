#include "BoundedPositiveInteger.h"

namespace tov
{

TOV_BEGIN_CLASS (BoundedPositiveInteger, { "interpolationKey", "PositiveInteger" })
TOV_END_CLASS()

} // namespace tov
