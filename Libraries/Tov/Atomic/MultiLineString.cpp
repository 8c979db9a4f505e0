#include "MultiLineString.h"

namespace tov
{

TOV_BEGIN_CLASS (MultiLineString, { "friendlyName", "\"Multi-line Text\"" }, { "heightWhenUsedInParameterRow", "100" })
TOV_END_CLASS()

} // namespace tov
