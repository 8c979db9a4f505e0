#include "ObjectWeakPointer.h"
#include "../Core/ClassRegistry.h"
#include "../Core/ObjectImporter.h"
#include "../Core/ObjectSpaceProvider.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

TOV_BEGIN_CLASS (ObjectWeakPointer, { "target", "Object" })
TOV_END_CLASS()

ObjectWeakPointer::ObjectWeakPointer (const ObjectWeakPointer& other)
    : ObjectWeakPointerBase (static_cast<const ObjectWeakPointerBase&> (other)), View()
{
    if (object != nullptr)
        View::attachObject (object, false);
}

ObjectWeakPointer::~ObjectWeakPointer()
{
    detachFromObject();
}

Class* ObjectWeakPointer::getTargetClass() const
{
    return targetClass.get (*this);
}

void ObjectWeakPointer::setClass (Class* newClass)
{
    ObjectWeakPointerBase::setClass (newClass);
    targetClass.forget();
}

void ObjectWeakPointer::attachToObject (Object* target)
{
    View::attachObject (target, false);
    object = target;
}

void ObjectWeakPointer::detachFromObject()
{
    if (object == nullptr)
        return;
    View::detachObject (object);
    object = nullptr;
}

//==============================================================================
Object* ObjectWeakPointer::get (juce::String* errorMessage)
{
    if (object != nullptr || isInsideChanged() || address.isNull())
        return object;

    bool improvable = false;
    ObjectSpace* foundSpace = nullptr;
    Object* target = address.getObject (this, &foundSpace, errorMessage, &improvable);
    if (target == nullptr || target->isBeingDestroyed() || ! target->isObjectInitialized())
        return nullptr;

    if (! Class::inheritsFrom (target->getClass(), getTargetClass()))
    {
        juce::String warning = "Warning: wrong type in weak pointer, expected " + getTargetClass()->getName()
                             + ", found " + target->getClass()->getName() + " => reseting pointer";
        const juce::String path = ObjectImporter::makeObjectFriendlyPath (*this);
        if (path.isNotEmpty())
            warning << " " << path;
        ExecutionContext::get().warning (warning);
        detachFromObject();
        address.reset();
        return nullptr;
    }

    attachToObject (target);
    if (improvable)
        address.setObject (target, foundSpace);
    return object;
}

//==============================================================================
void ObjectWeakPointer::set (Object* target, bool notify)
{
    Object* previous = get();
    if (target != nullptr)
    {
        if (target == object)
            return;
        detachFromObject();
        attachToObject (target);
    }
    else
    {
        if (object == nullptr && address.isNull())
            return;
        detachFromObject();
    }
    address.reset();

    if (notify)
    {
        changed();
        notifyTargetsOfChange (previous, object);
    }
}

void ObjectWeakPointer::set (const VariableAddress& newAddress, bool notify)
{
    if (newAddress == address)
        return;
    if (address.isNull() && object != nullptr && newAddress.getObject (this) == object)
    {
        address = newAddress;
        return;
    }

    // A pointer that holds nothing yet (every message's and transaction's) has nothing to resolve.
    Object* previous = object == nullptr && address.isNull() ? nullptr : get();
    detachFromObject();
    address = newAddress;

    if (notify)
    {
        if (hasParent() && hasSpace())
            get();
        changed();
        notifyTargetsOfChange (previous, newAddress.getObject (this));
    }
}

void ObjectWeakPointer::setAddressOf (Object* target, bool notify)
{
    VariableAddress targetAddress;
    if (! targetAddress.setObject (target, nullptr))
        return;
    // A pointer that holds nothing (every transaction's) takes the new address as it is: a copy
    // would count the references of its strings again, and the dropped one count them down.
    if (! notify && object == nullptr && address.isNull())
        address = std::move (targetAddress);
    else
        set (targetAddress, notify);
}

void ObjectWeakPointer::notifyTargetsOfChange (Object* previous, Object* current) const
{
    if (! hasSpace())
        return;
    auto* self = const_cast<ObjectWeakPointer*> (this);
    if (previous != nullptr && previous->hasSpace())
        previous->weakPointerToThisChangedCallback (self);
    if (current != nullptr && current->hasSpace())
        current->weakPointerToThisChangedCallback (self);
}

//==============================================================================
void ObjectWeakPointer::deletedCallback (Object* deleted)
{
    if (deleted != object)
        return;
    // The address stays, so that the pointer reconnects when the object comes back.
    detachFromObject();
    changed();
}

void ObjectWeakPointer::deinitializeObject()
{
    if (hasSpace() && object != nullptr && object->hasSpace())
        object->weakPointerToThisChangedCallback (this);
    ObjectWeakPointerBase::deinitializeObject();
}

void ObjectWeakPointer::copyTo (Object& target) const
{
    auto* pointer = dynamic_cast<ObjectWeakPointer*> (&target);
    if (pointer == nullptr || pointer == this)
        return;
    copyClassTo (target);

    if (object != nullptr && pointer->object == object)
    {
        if (! address.isNull() && pointer->address.isNull())
            pointer->address = address;
        return;
    }
    if (pointer->object == object && pointer->address == address)
        return;

    Object* previous = pointer->get();
    pointer->detachFromObject();
    if (object != nullptr)
        pointer->attachToObject (object);
    pointer->address = address;
    pointer->changed();
    pointer->notifyTargetsOfChange (previous, object);
}

//==============================================================================
bool ObjectWeakPointer::resolvesLoadedAddressesEarly (const Object& provider)
{
    Class* deferringClass = tov::getClass ("WazuService");
    return deferringClass == nullptr || ! Class::inheritsFrom (provider.getClass(), deferringClass);
}

bool ObjectWeakPointer::load (ObjectImporter& importer)
{
    switch (importer.getCurrentType())
    {
        case StateType::nativePointerType:
            set (const_cast<Object*> (importer.getCurrentState()->getNativePointer()), true);
            return true;
        case StateType::voidType:
            set ((Object*) nullptr, true);
            return true;
        default:
            break;
    }

    VariableAddress loaded;
    if (! loaded.load (importer))
        return false;

    bool notify = true;
    if (object == nullptr && ! hasSpace())
        notify = isApplyingVariableConstraints() ? (hasParent() && getParent()->hasVariableConstraints()) : true;

    auto* provider = ObjectSpaceProvider::get (*this, false);
    auto* providerObject = dynamic_cast<Object*> (provider);
    if (provider != nullptr && (providerObject == nullptr || resolvesLoadedAddressesEarly (*providerObject)))
        if (Object* target = loaded.getObject (this))
        {
            set (target, notify);
            return true;
        }

    set (loaded, notify);
    return true;
}

} // namespace tov
