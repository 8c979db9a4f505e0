#include "Transaction.h"

namespace tov
{

TOV_BEGIN_CLASS (Transaction)
TOV_END_CLASS()

} // namespace tov
