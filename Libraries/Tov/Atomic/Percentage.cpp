#include "Percentage.h"

namespace tov
{

TOV_BEGIN_CLASS (Percentage, { "diff", "SignedPercentage" },
                             { "presets", "{0 = 0.0, 25 = 0.25, 50 = 0.5, 75 = 0.75, 100 = 1.0}" })
TOV_END_CLASS()

} // namespace tov
