#pragma once

#include "HierarchicalSelection.h"
#include "../Core/TemplateClassGenerator.h"

namespace tov
{

/** Makes "HierarchicalSelection(T)": abstract hierarchical selections whose class attribute
    "target" is T, the class of their leaves, for concrete hierarchies to derive from. */
class HierarchicalSelectionClassGenerator : public DerivedClassGenerator<HierarchicalSelection>
{
public:
    HierarchicalSelectionClassGenerator() : DerivedClassGenerator ("Hierarchical Selection of %1s", { "target" }) {}
};

} // namespace tov
