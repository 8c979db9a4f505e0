#include "LocalNetworkPort.h"

namespace tov
{

TOV_BEGIN_CLASS (LocalNetworkPort, { "maximum", "65535" })
TOV_END_CLASS()

} // namespace tov
