#include "Method.h"

namespace tov
{

TOV_BEGIN_CLASS (Method)
TOV_END_CLASS()

} // namespace tov
