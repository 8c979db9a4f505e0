#include "StateObject.h"

namespace tov
{

TOV_BEGIN_CLASS (StateObject)
TOV_END_CLASS()

} // namespace tov
