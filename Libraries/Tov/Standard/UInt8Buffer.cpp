#include "UInt8Buffer.h"

namespace tov
{

TOV_BEGIN_CLASS (UInt8Buffer)
TOV_END_CLASS()

} // namespace tov
