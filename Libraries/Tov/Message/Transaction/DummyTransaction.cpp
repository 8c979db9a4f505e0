#include "DummyTransaction.h"

namespace tov
{

TOV_BEGIN_CLASS (DummyTransaction)
TOV_END_CLASS()

} // namespace tov
