#include "Justification.h"

namespace tov
{

TOV_BEGIN_CLASS (Justification, { "bitFlags", "true" })
TOV_END_CLASS()

} // namespace tov
