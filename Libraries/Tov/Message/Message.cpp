#include "Message.h"

namespace tov
{

TOV_BEGIN_CLASS (Message)
TOV_END_CLASS()

} // namespace tov
