#include "String.h"

namespace tov
{

TOV_BEGIN_CLASS (String, { "friendlyName", "\"Text\"" })
TOV_END_CLASS()

} // namespace tov
