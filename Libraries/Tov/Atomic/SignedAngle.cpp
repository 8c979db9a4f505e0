#include "SignedAngle.h"

namespace tov
{

TOV_BEGIN_CLASS (SignedAngle, { "friendlyName", "\"Angle (-180 - 180 deg)\"" },
                              { "minimum", "-3.1415926535897932384626433832795" },
                              { "maximum", "3.1415926535897932384626433832795" },
                              { "diff", "SingleTurnAngle" })
TOV_END_CLASS()

} // namespace tov
