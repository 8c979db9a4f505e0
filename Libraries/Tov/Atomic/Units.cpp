#include "Units.h"

namespace tov
{

TOV_BEGIN_CLASS (PositiveMeters, { "friendlyName", "\"Meters\"" }, { "minimum", "0.0" }, { "diff", "Meters" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (Millimeters, { "friendlyName", "\"Millimeters\"" }, { "unit", "\"mm\"" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (PositiveMillimeters, { "minimum", "0.0" }, { "diff", "Millimeters" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (Pixels, { "friendlyName", "\"Pixels (positive or negative)\"" }, { "unit", "\"px\"" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (PositivePixels, { "friendlyName", "\"Pixels\"" }, { "minimum", "0.0" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (StrictlyPositivePixels, { "minimum", "1.0" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (Milliseconds, { "friendlyName", "\"Milliseconds\"" }, { "unit", "\"ms\"" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (SignedMilliseconds, { "friendlyName", "\"Milliseconds (signed)\"" }, { "unit", "\"ms\"" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (Brightness, { "unit", "\"nit\"" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (Frequency, { "unit", "\"Hz\"" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (Illuminance, { "unit", "\"lx\"" }, { "minimum", "1.0" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (LuminousPower, { "unit", "\"lm\"" })
TOV_END_CLASS()

} // namespace tov
