#include "HierarchicalSelection.h"
#include "../Container/ObjectOwnedVector.h"
#include "../Core/ObjectImporter.h"

namespace tov
{

TOV_BEGIN_CLASS (HierarchicalSelection, { "target", "Object" }, { "heightWhenUsedInParameterRow", "100" })
    TOV_VARIABLE (selectedScopes)
    TOV_VARIABLE (selectedLeaves)
TOV_END_CLASS()

HierarchicalSelection::HierarchicalSelection()
{
    selectedScopes.setParent (this);
    selectedLeaves.setParent (this);
}

//==============================================================================
bool HierarchicalSelection::isSelectableLeaf (Object* object) const
{
    return Class::inheritsFrom (object->getClass(), getTargetClass());
}

void HierarchicalSelection::getSubObjects (Object* object, std::vector<Object*>& result) const
{
    if (auto* vector = dynamic_cast<ObjectOwnedVector*> (object))
    {
        result.insert (result.end(), vector->getVector().begin(), vector->getVector().end());
        return;
    }
    const size_t count = object->getNumVariables();
    for (size_t i = 0; i < count; ++i)
        result.push_back (object->getVariable (i));
}

juce::String HierarchicalSelection::getObjectFriendlyName (Object* object) const
{
    return object->getFriendlyName();
}

Class* HierarchicalSelection::getTargetClass() const
{
    return targetClass.get (*this);
}

void HierarchicalSelection::setClass (Class* newClass)
{
    Object::setClass (newClass);
    targetClass.forget();
}

//==============================================================================
void HierarchicalSelection::select (Object* object, bool notify)
{
    if (object == nullptr || selectedScopes.containsAncestorsOf (object, true))
        return;
    selectedScopes.removeChildrenOf (object, false, false);
    selectedScopes.insert (object, false, true);
    foldFullGroupsAbove (object);
    if (notify)
        selectedScopes.changed();
    leavesInvalid = true;
}

void HierarchicalSelection::foldFullGroupsAbove (Object* object)
{
    auto* root = getHierarchyRoot();
    if (object == root)
        return;
    std::vector<Object*> subObjects;
    for (Object* parent = object->getParent(); parent != nullptr; parent = parent->getParent())
    {
        subObjects.clear();
        getSubObjects (parent, subObjects);
        if (subObjects.empty() || ! areAllSelected (subObjects))
            return;
        selectedScopes.remove (subObjects, false);
        selectedScopes.insert (parent, false, true);
        if (parent == root)
            return;
    }
}

bool HierarchicalSelection::areAllSelected (const std::vector<Object*>& objects)
{
    for (auto* object : objects)
        if (! selectedScopes.contains (object))
            return false;
    return true;
}

void HierarchicalSelection::unselect (Object* object, bool notify)
{
    if (object == nullptr)
        return;
    bool changedScopes = false;
    if (selectedScopes.containsChildOf (object, true))
    {
        selectedScopes.removeChildrenOf (object, true, false);
        changedScopes = true;
    }

    std::vector<Object*> subObjects;
    while (auto* ancestor = selectedScopes.findAncestorOf (object, false))
    {
        selectedScopes.remove (ancestor, false);
        subObjects.clear();
        getSubObjects (ancestor, subObjects);
        for (auto* subObject : subObjects)
            if (subObject != object)
                selectedScopes.insert (subObject, false, true);
        changedScopes = true;
    }

    if (! changedScopes)
        return;
    if (notify)
        selectedScopes.changed();
    leavesInvalid = true;
}

int32_t HierarchicalSelection::getScopeSelectionStatus (Object* object)
{
    std::vector<Object*> subObjects;
    getSubObjects (object, subObjects);
    if (selectedScopes.containsAncestorsOf (object, true))
        return subObjects.empty() ? HierarchicalSelectionStatus::selectedItem : HierarchicalSelectionStatus::selectedGroup;
    if (subObjects.empty())
        return HierarchicalSelectionStatus::unselectedItem;

    size_t numHits = 0, numSelected = 0;
    for (auto* subObject : subObjects)
    {
        const bool selected = selectedScopes.contains (subObject);
        numSelected += selected ? 1 : 0;
        numHits += selected || selectedScopes.containsChildOf (subObject, false) ? 1 : 0;
    }
    if (numHits == 0)
        return HierarchicalSelectionStatus::unselectedGroup;
    return numSelected == subObjects.size() ? HierarchicalSelectionStatus::selectedGroup
                                            : HierarchicalSelectionStatus::partiallySelectedGroup;
}

//==============================================================================
ObjectSelection& HierarchicalSelection::getSelectedLeaves()
{
    ensureLeavesAreComputed();
    return selectedLeaves;
}

void HierarchicalSelection::ensureLeavesAreComputed()
{
    if (leavesInvalid)
        computeSelectedLeaves();
}

void HierarchicalSelection::computeSelectedLeaves()
{
    std::vector<Object*> leaves;
    selectedScopes.ensureHasBeenChecked();
    for (size_t i = 0; i < selectedScopes.size(); ++i)
        if (auto* scope = selectedScopes.get (i))
            computeSelectedLeavesRecursively (scope, leaves);
    // Up to date before the leaves' observers hear of them, so that reading them computes nothing.
    leavesInvalid = false;
    selectedLeaves.set (leaves, true);
}

void HierarchicalSelection::computeSelectedLeavesRecursively (Object* object, std::vector<Object*>& result) const
{
    if (isSelectableLeaf (object))
    {
        result.push_back (object);
        return;
    }
    std::vector<Object*> subObjects;
    getSubObjects (object, subObjects);
    for (auto* subObject : subObjects)
        computeSelectedLeavesRecursively (subObject, result);
}

//==============================================================================
bool HierarchicalSelection::load (ObjectImporter& importer)
{
    const auto& state = *importer.getCurrentState();
    const bool oldList = state.getType() == StateType::variablesType && state.getNumVariables() > 0
                      && state.getVariableStateByNameRef ("selectedScopes") == nullptr
                      && state.getVariableStateByNameRef ("selectedLeaves") == nullptr;
    const bool result = oldList ? selectedScopes.load (importer) : Object::load (importer);
    leavesInvalid = true;
    return result;
}

void HierarchicalSelection::variableChangedCallback (Object* variable, Object*)
{
    if (variable == &selectedScopes)
        leavesInvalid = true;
}

} // namespace tov
