#include "BufferComponentType.h"

namespace tov
{

TOV_BEGIN_CLASS (BufferComponentType)
TOV_END_CLASS()

} // namespace tov
