#include "AsyncCompletionRoutine.h"

namespace tov
{

TOV_BEGIN_CLASS (AsyncCompletionRoutine)
TOV_END_CLASS()

} // namespace tov
