#include "DiffObjectSpaceMessage.h"

namespace tov
{

TOV_BEGIN_CLASS (DiffObjectSpaceMessage)
TOV_END_CLASS()

} // namespace tov
