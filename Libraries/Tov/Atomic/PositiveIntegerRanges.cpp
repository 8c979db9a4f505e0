#include "PositiveIntegerRanges.h"

namespace tov
{

TOV_BEGIN_CLASS (StrictlyPositiveInteger, { "friendlyName", "\"Positive Number (> 0)\"" }, { "minimum", "1" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (PositiveInteger7Bits, { "friendlyName", "\"Number (0 - 127)\"" }, { "maximum", "127" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (PositiveInteger8Bits, { "friendlyName", "\"Number (0 - 255)\"" }, { "maximum", "255" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (PositiveInteger14Bits, { "friendlyName", "\"Number (0 - 16383)\"" }, { "maximum", "16383" })
TOV_END_CLASS()

} // namespace tov
