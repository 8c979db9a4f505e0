#include "NetworkPort.h"

namespace tov
{

TOV_BEGIN_CLASS (NetworkPort, { "maximum", "65535" })
TOV_END_CLASS()

} // namespace tov
