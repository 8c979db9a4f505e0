#include "Void.h"

namespace tov
{

TOV_BEGIN_CLASS (Void)
TOV_END_CLASS()

} // namespace tov
