#pragma once

#include "../Container/ObjectSelection.h"
#include "HierarchicalSelectionStatus.h"
#include <vector>
#include "../Core/TargetClassCache.h"

namespace tov
{

/** A selection over a tree, kept in its compact form: the selected scopes, each standing for
    everything below it. The leaves, the objects of the target class that the scopes cover, are
    derived from them on demand.

    Selecting the last unselected child of a group folds the group into its parent, up to the
    root of the hierarchy; unselecting something below a selected scope unfolds that scope one
    level at a time until the object stands outside. A subclass says where the hierarchy starts
    and, when the variables of its objects are not its shape, which sub-objects each one has.

        scopes: { show }         unselect (front.a)  ->  scopes: { back, front.b, front.c }
        scopes: { back, front.b, front.c }   select (front.a)  ->  scopes: { show }

    Its class "HierarchicalSelection(T)", or a subclass's attribute "target", names the class of
    the leaves.
*/
class HierarchicalSelection : public Object
{
public:
    TOV_DECLARE_CLASS (HierarchicalSelection, Object)

    HierarchicalSelection();
    HierarchicalSelection (const HierarchicalSelection& other) : HierarchicalSelection()  { other.copyTo (*this); }

    ObjectSelection selectedScopes;
    ObjectSelection selectedLeaves;

    //==============================================================================
    /** Whether the object is a leaf: its class inherits from the target class. */
    virtual bool isSelectableLeaf (Object* object) const;
    /** The object at which walking up stops. */
    virtual Object* getHierarchyRoot() const = 0;
    /** The object's sub-objects in the hierarchy: a vector's elements, otherwise its variables. */
    virtual void getSubObjects (Object* object, std::vector<Object*>& result) const;
    /** Whether a browser of the hierarchy shows the scope; every scope here. */
    virtual bool shouldScopeBeVisible (Object* object) const  { return true; }
    virtual juce::String getObjectFriendlyName (Object* object) const;

    //==============================================================================
    /** Selects the object, unless a selected scope already covers it, folding full groups. */
    void select (Object* object, bool notify = true);
    /** Unselects the object and what lies below it, unfolding the scopes that covered it. */
    void unselect (Object* object, bool notify = true);
    /** Selects the root. */
    void selectAll (bool notify = true)              { select (getHierarchyRoot(), notify); }
    /** One of the HierarchicalSelectionStatus values. */
    int32_t getScopeSelectionStatus (Object* object);

    ObjectSelection& getSelectedScopes() noexcept    { return selectedScopes; }
    /** The leaves of the selected scopes, computed first when they are out of date. */
    ObjectSelection& getSelectedLeaves();
    /** The number of selected leaves. */
    size_t size()                                    { return getSelectedLeaves().size(); }
    bool isEmpty()                                   { return size() == 0; }

    /** Derives the leaves from the scopes, in the order of the scopes. */
    void computeSelectedLeaves();
    /** Appends the object when it is a leaf, otherwise the leaves below it; leaves below a leaf
        are not reached. */
    void computeSelectedLeavesRecursively (Object* object, std::vector<Object*>& result) const;
    void ensureLeavesAreComputed();
    void invalidateLeaves() noexcept                 { leavesInvalid = true; }
    bool areLeavesInvalid() const noexcept           { return leavesInvalid; }

    /** The class attribute "target", Object by default; cached until the class changes. */
    Class* getTargetClass() const;
    void setClass (Class* newClass) override;

    /** A state that names neither "selectedScopes" nor "selectedLeaves" is an old file's list
        of scopes. The leaves are computed again at the next read. */
    bool load (ObjectImporter& importer) override;
    /** A change of the scopes puts the leaves out of date. */
    void variableChangedCallback (Object* variable, Object* changedObject) override;

private:
    bool leavesInvalid = false;
    TargetClassCache targetClass;

    /** Replaces a full set of siblings by their parent, level after level up to the root. */
    void foldFullGroupsAbove (Object* object);
    bool areAllSelected (const std::vector<Object*>& objects);
};

} // namespace tov
