#include "TaskState.h"

namespace tov
{

TOV_BEGIN_CLASS (TaskState)
TOV_END_CLASS()

} // namespace tov
