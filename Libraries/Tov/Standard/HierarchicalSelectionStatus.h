#pragma once

#include "../Atomic/Enumeration.h"

namespace tov
{

/** How far an object of a hierarchy is selected: an item (no sub-objects) is selected or not; a
    group is selected wholly, partly or not at all. */
class HierarchicalSelectionStatus : public Enumeration
{
public:
    TOV_DECLARE_CLASS (HierarchicalSelectionStatus, Enumeration)
    TOV_ELEMENTS ((unselectedItem, 0),
                  (selectedItem, 1),
                  (unselectedGroup, 2),
                  (partiallySelectedGroup, 3),
                  (selectedGroup, 4))
};

} // namespace tov
