#include "SignedPercentage.h"

namespace tov
{

TOV_BEGIN_CLASS (SignedPercentage, { "friendlyName", "\"Percentage (-100% - 100%)\"" },
                                   { "minimum", "-1.0" },
                                   { "presets", "{minus100 = -1.0, minus50 = -0.5, 0 = 0.0, 50 = 0.5, 100 = 1.0}" })
TOV_END_CLASS()

} // namespace tov
