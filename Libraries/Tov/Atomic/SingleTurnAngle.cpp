#include "SingleTurnAngle.h"

namespace tov
{

TOV_BEGIN_CLASS (SingleTurnAngle, { "friendlyName", "\"Angle (0 - 360 deg)\"" },
                                  { "minimum", "0.0" },
                                  { "maximum", "6.2831853071795864769252867665590" },
                                  { "diff", "SignedAngle" })
TOV_END_CLASS()

} // namespace tov
