#include "PositiveReal.h"

namespace tov
{

TOV_BEGIN_CLASS (PositiveReal, { "friendlyName", "\"Positive floating point number\"" },
                               { "minimum", "0.0" },
                               { "allowedCharacters", "\"()+-*/0123456789.e\"" })
TOV_END_CLASS()

void PositiveReal::set (double newValue, bool notify)
{
    Real::set (newValue < 0.0 ? 0.0 : newValue, notify);
}

} // namespace tov
