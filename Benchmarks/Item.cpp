#include "Item.h"

namespace tov::benchmarks
{

TOV_BEGIN_CLASS (Item)
TOV_END_CLASS()

} // namespace tov::benchmarks
