#include "Int32Buffer.h"

namespace tov
{

TOV_BEGIN_CLASS (Int32Buffer)
TOV_END_CLASS()

} // namespace tov
