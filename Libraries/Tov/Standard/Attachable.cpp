#include "Attachable.h"
#include "../Container/ObjectOwnedVector.h"
#include "../Pointer/ObjectOwnedPointer.h"
#include <set>

namespace tov
{

TOV_BEGIN_CLASS (Attachable, { "target", "Object" })
    TOV_VARIABLE (target)
TOV_END_CLASS()

Attachable::Attachable()
{
    target.setParent (this);
    accessor.setParent (this);
    attachedTarget.setParent (this);
}

Attachable::~Attachable()
{
    editabilityDeclarator.clear();
    detachAllObjects();
}

//==============================================================================
Object* Attachable::getTarget (Object& object)
{
    auto* pointer = object.getContextVariableByNameAndClass ("target", &ObjectWeakPointer::staticClass);
    return pointer != nullptr ? static_cast<ObjectWeakPointer*> (pointer)->get() : nullptr;
}

void Attachable::setTarget (Object* newTarget, bool updateAttachements)
{
    if (target.get() == newTarget)
        return;
    target.set (newTarget, true);
    if (updateAttachements)
        updateTargetAttachements();
}

void Attachable::removeTarget (bool updateAttachements)
{
    if (target.get() != nullptr)
        setTarget (nullptr, updateAttachements);
}

Class* Attachable::getTargetClass() const
{
    if (auto* current = target.get())
        return current->getClass();
    return getClass()->getClassAttribute ("target", &Object::staticClass);
}

juce::String Attachable::getTargetFriendlyName (bool withParent) const
{
    auto* current = target.get();
    if (current == nullptr)
        return "<detached>";
    const juce::String name = current->getFriendlyName();
    if (! withParent)
        return name;

    // A pointer or a list is no thing of its own to a reader: its owner is.
    Object* owner = current->getParent();
    if (dynamic_cast<ObjectOwnedPointer*> (owner) != nullptr || dynamic_cast<ObjectOwnedVector*> (owner) != nullptr)
        owner = owner->getParent();
    return owner != nullptr ? owner->getFriendlyName() + " " + name : name;
}

Accessor* Attachable::getAccessor()
{
    if (accessor.get() == nullptr)
        accessor.set (Accessor::getAccessor (*this), false);
    return accessor.get();
}

bool Attachable::isTargetEditable() const
{
    return hasTarget() && target.get()->isEditable();
}

void Attachable::invalidateEditability (Object& object)
{
    std::vector<ObjectWeakPointer*> pointers;
    object.getWeakPointersToThis (pointers);
    // An attachable holds two pointers to its target (target and attached target): told once.
    std::set<Attachable*> told;
    for (auto* pointer : pointers)
        if (auto* attachable = dynamic_cast<Attachable*> (pointer->getParent()))
            if (told.insert (attachable).second)
                attachable->targetEditabilityChanged (object.isEditable());
}

juce::String Attachable::makeChangeTransactionDescription() const
{
    return "Change " + getTargetFriendlyName (true);
}

juce::String Attachable::makeSetTransactionDescription (const juce::String& valueText) const
{
    return "Set " + getTargetFriendlyName (true) + " to " + valueText;
}

//==============================================================================
bool Attachable::areAttachableAndTargetCompatible (Class* attachableClass, Object& object)
{
    auto* objectClass = object.getClass();
    if (auto* required = attachableClass->getClassAttribute ("target"))
        if (! Class::inheritsFrom (objectClass, required))
            return false;

    if (auto* convertible = attachableClass->getClassAttribute ("mustBeConvertibleTo"))
    {
        auto* defaultObject = objectClass != nullptr ? objectClass->getDefaultObject() : nullptr;
        if (defaultObject == nullptr || ! defaultObject->isConvertibleTo (convertible))
            return false;
    }

    if (attachableClass->hasAttribute ("requiresAncestorOfClass"))
    {
        bool found = false;
        for (auto* ancestorClass : attachableClass->getClassVectorAttribute ("requiresAncestorOfClass"))
            found = found || object.findAncestorOfClass (ancestorClass) != nullptr;
        if (! found)
            return false;
    }

    if (auto* variableClass = attachableClass->getClassAttribute ("requiresVariableOfClass"))
        if (object.getVariableByClass (variableClass) == nullptr)
            return false;

    return ! attachableClass->hasAttribute ("requiresVariables") || object.getNumVariables() > 0;
}

//==============================================================================
void Attachable::updateTargetAttachements()
{
    auto* previous = attachedTarget.get();
    auto* current = target.get();
    if (previous == current)
        return;
    if (previous != nullptr)
        detachObject (previous);

    editabilityDeclarator.clear();
    if (current == nullptr)
    {
        attachedTarget.set (nullptr, false);
        return;
    }
    attachObject (current, false);
    attachedTarget.set (current, false);
    // Asking declares every object the answer depends on, which the declarator then watches.
    current->isEditable (editabilityDeclarator);
}

void Attachable::targetChanged()
{
    updateTargetAttachements();
    if (! hasTarget())
        return;
    targetValueChanged();
    targetEditabilityChanged (isTargetEditable());
}

void Attachable::changedCallback (Object* object, Object*)
{
    if (object == attachedTarget.getIfAlreadyCached())
        targetValueChanged();
}

void Attachable::variableChangedCallback (Object* variable, Object* changedObject)
{
    if (variable == &target)
        targetChanged();
    Object::variableChangedCallback (variable, changedObject);
}


} // namespace tov
