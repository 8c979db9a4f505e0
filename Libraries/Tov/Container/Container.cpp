#include "Container.h"
#include "../Core/StateObjectExporter.h"
#include "../Pointer/ObjectOwnedPointer.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

TOV_BEGIN_CLASS (Container)
TOV_END_CLASS()

Object* Container::addOwnedObject (Object* object, Object* container)
{
    object->incrementReferenceCounter();
    if (container->isObjectInitialized() && ! object->isObjectInitialized())
        object->callInitializeObject (container->getSpace(), nullptr, container);
    else
        object->setParent (container);
    return object;
}

void Container::releaseOwnedObject (Object*& slot, const Object* container)
{
    Object* object = slot;
    if (object == nullptr)
        return;
    slot = nullptr;
    if (object->getParent() == container)
        object->setParent (nullptr);
    object->decrementReferenceCounter (true);
}

void Container::initializeOwnedObject (Object* object)
{
    if (! object->isObjectInitialized())
        object->callInitializeObject (getSpace(), nullptr, this);
    else
        object->setParent (this);
}

void Container::deinitializeOwnedObject (Object* object)
{
    if (ObjectOwnedPointer::isStrictlyOwnedBy (object, this))
        object->callDeinitializeObject();
}

void Container::markOwnedObjectAsBeingDestroyed (Object* object)
{
    if (ObjectOwnedPointer::isStrictlyOwnedBy (object, this))
        object->markObjectsAsBeingDestroyed();
}

void Container::releasePreviousObject (Object* object, bool stillHeld)
{
    if (object->getParent() == this && ! stillHeld)
        object->setParent (nullptr);
    object->decrementReferenceCounter (true);
}

void Container::destroyRefusedObject (Object* object)
{
    if (object == nullptr || object->getReferenceCount() != 0)
        return;
    if (object->isObjectInitialized())
        object->callDeinitializeObject();
    // Without an identifier it cannot reach a space on its way out.
    object->setUniqueIdentifier (UniqueIdentifier());
    object->deleteThis();
}

//==============================================================================
void Container::copyTo (Object& target) const
{
    if (&target == this)
        return;
    copyClassTo (target);
    if (equals (target))
        return;
    auto state = StateObjectExporter::make (*this, exportTransientVariables, false);
    state->setClassExpression (nullptr);
    target.loadFromState (ExecutionContext::get(), state);
}

juce::String Container::toString() const
{
    return getClassName();
}

} // namespace tov
