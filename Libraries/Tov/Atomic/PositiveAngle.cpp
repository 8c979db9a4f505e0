#include "PositiveAngle.h"

namespace tov
{

TOV_BEGIN_CLASS (PositiveAngle, { "friendlyName", "\"Angle (0 - 180 deg)\"" },
                                { "minimum", "0.0" },
                                { "maximum", "3.1415926535897932384626433832795" })
TOV_END_CLASS()

} // namespace tov
