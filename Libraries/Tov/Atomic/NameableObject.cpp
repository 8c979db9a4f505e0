#include "NameableObject.h"

namespace tov
{

TOV_BEGIN_CLASS (NameableObject)
    TOV_VARIABLE (name)
TOV_END_CLASS()

} // namespace tov
