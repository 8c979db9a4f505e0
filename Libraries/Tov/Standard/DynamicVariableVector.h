#pragma once

#include "DynamicVariable.h"
#include "../Container/ObjectSelection.h"
#include "../Container/OwnedVector.h"

namespace tov
{

/** The dynamic variables of an object, in order. Its owner, when it declares its variables
    (DynamicVariablesDeclaringObject), re-declares them in invalidateVariables: values that were
    set stay with the variables that are declared again.

    It also keeps, in getElementPointers, the owned pointers held by its values (or by their
    variable "player") whose target class is an Element, the class of an application's scene
    items, for whoever lists the items that a document's parameters hold.
*/
class DynamicVariableVector : public OwnedVector<DynamicVariable>
{
public:
    TOV_DECLARE_CLASS (DynamicVariableVector, ObjectOwnedVector)

    DynamicVariableVector();

    /** The index of the first variable of that friendly name, or -1. */
    int findDynamicVariableByFriendlyName (const juce::String& name) const;
    /** The index of the first variable whose attribute "identifier" is that text, else the one
        whose friendly name is the identifier made friendly ("blurRadius" finds "Blur Radius"); -1. */
    int findDynamicVariableByIdentifier (const juce::String& identifier) const;

    ObjectSelection& getElementPointers() noexcept   { return elementPointers; }
    void updateElementPointers();
    /** Asks the owner to declare its variables again and keeps exactly those. */
    void invalidateVariables();

    /** Brings states of old documents up to date before loading them. */
    bool load (ObjectImporter& importer) override;
    void thisChangedCallback() override              { updateElementPointers(); }

    juce::String getClassName() const override       { return Object::getClassName(); }

private:
    ObjectSelection elementPointers;

    static std::shared_ptr<State> upgradeElement (const State& element);
    bool isKeptDuringConstraintPass (const ObjectImporter& importer) const;
};

} // namespace tov
