#include "SourceCode.h"

namespace tov
{

TOV_BEGIN_CLASS (SourceCode, { "displayInParameters", "false" })
TOV_END_CLASS()

} // namespace tov
