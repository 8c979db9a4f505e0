#include "HierarchicalSelectionStatus.h"

namespace tov
{

TOV_BEGIN_CLASS (HierarchicalSelectionStatus)
TOV_END_CLASS()

} // namespace tov
