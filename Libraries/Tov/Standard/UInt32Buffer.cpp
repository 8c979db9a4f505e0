#include "UInt32Buffer.h"

namespace tov
{

TOV_BEGIN_CLASS (UInt32Buffer)
TOV_END_CLASS()

} // namespace tov
