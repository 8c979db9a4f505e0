#include "BufferWithLayout.h"

namespace tov
{

TOV_BEGIN_CLASS (BufferWithLayout)
    TOV_VARIABLE (buffer)
    TOV_VARIABLE (layout)
TOV_END_CLASS()

} // namespace tov
