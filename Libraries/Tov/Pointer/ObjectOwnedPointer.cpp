#include "ObjectOwnedPointer.h"
#include "../Standard/ExecutionContext.h"
#include "../Core/Json.h"
#include "../Core/ClassRegistry.h"
#include "../Core/ObjectExporter.h"
#include "../Core/ObjectImporter.h"

namespace tov
{

TOV_BEGIN_CLASS (ObjectOwnedPointer, { "target", "Object" })
TOV_END_CLASS()

ObjectOwnedPointer::ObjectOwnedPointer (Class* targetClass, Object* pointer)
{
    setTargetClass (targetClass);
    set (pointer, true);
}

ObjectOwnedPointer::~ObjectOwnedPointer()
{
    if (object == nullptr)
        return;
    if (object->getParent() == this)
        object->setParent (nullptr);
    object->decrementReferenceCounter (true);
}

//==============================================================================
void ObjectOwnedPointer::set (Object* pointer, bool notify)
{
    if (pointer == object)
        return;

    if (Object* old = object)
    {
        // A count above 1 means another owner keeps the object alive after this decrement.
        const bool survives = old->getReferenceCount() > 1;
        old->decrementReferenceCounter (true);
        if (survives && old->getParent() == this)
            old->setParent (nullptr);
    }

    object = pointer;
    if (object != nullptr)
    {
        object->incrementReferenceCounter();
        adoptObject();
    }
    if (notify)
        changed();
}

void ObjectOwnedPointer::adoptObject()
{
    if (isObjectInitialized() && ! object->isObjectInitialized())
        object->callInitializeObject (getSpace(), nullptr, this);
    else
        object->setParent (this);
}

Object* ObjectOwnedPointer::release()
{
    Object* released = object;
    if (released == nullptr)
        return nullptr;
    if (released->getParent() == this)
        released->setParent (nullptr);
    if (released->getReferenceCount() != 0)
        released->decrementReferenceCounter (false);
    object = nullptr;
    changed();
    return released;
}

//==============================================================================
Class* ObjectOwnedPointer::getTargetClass() const
{
    return targetClass.get (*this);
}

void ObjectOwnedPointer::setTargetClass (Class* target)
{
    setClass (target != nullptr ? ownedPointerClass (target) : &ObjectOwnedPointer::staticClass);
    targetClass.set (target);
}

void ObjectOwnedPointer::setClass (Class* newClass)
{
    Object::setClass (newClass);
    targetClass.forget();
}

bool ObjectOwnedPointer::isStrictlyOwnedBy (const Object* object, const Object* owner)
{
    return object != nullptr && object->getParent() == owner && object->getReferenceCount() == 1;
}

bool ObjectOwnedPointer::shouldDisplayInElementTree (const MemberSignature* signature) const
{
    return getClass()->getBooleanAttribute (signature, "displayInElementTree", false);
}

bool ObjectOwnedPointer::shouldDisplayTypeSelector (const MemberSignature* signature) const
{
    return getClass()->getBooleanAttribute (signature, "displayTypeSelector", true);
}

//==============================================================================
void ObjectOwnedPointer::copyTo (Object& target) const
{
    auto* pointer = dynamic_cast<ObjectOwnedPointer*> (&target);
    if (pointer == nullptr || pointer == this)
        return;
    copyClassTo (target);

    // The target's object keeps its identity, its views and the weak pointers to it.
    if (object != nullptr && pointer->object != nullptr && object->getClass() == pointer->object->getClass())
        object->copyTo (*pointer->object);
    else
        pointer->set (object != nullptr ? object->clone (pointer) : nullptr, true);
}

bool ObjectOwnedPointer::equalsSameClass (const Object& other) const
{
    return object == static_cast<const ObjectOwnedPointer&> (other).object;
}

bool ObjectOwnedPointer::equalsIgnoringVariables (const Object& other, ObjectPredicate& ignored) const
{
    Object* otherObject = static_cast<const ObjectOwnedPointer&> (other).object;
    if (otherObject == nullptr)
        return object == nullptr;
    if (object == nullptr)
        return false;
    if (ignored.doesAcceptObject (object) && ignored.doesAcceptObject (otherObject))
        return true;
    return object->equalsIgnoringVariables (*otherObject, ignored);
}

juce::String ObjectOwnedPointer::toString() const
{
    return "<" + (object != nullptr ? object->toString() : juce::String()) + ">";
}

//==============================================================================
void ObjectOwnedPointer::save (ObjectExporter& exporter) const
{
    exporter.writeOwnedPointer (object, getTargetClass());
}

bool ObjectOwnedPointer::loadIntoExistingObject (ObjectImporter& importer)
{
    if (importer.getCurrentType() != StateType::ownedPointerType || object == nullptr)
        return false;
    auto embedded = importer.getCurrentState()->getOwnedPointer();
    if (embedded == nullptr || embedded->getUniqueIdentifier().isNotNull())
        return false;
    // A state that names no class holds an object of the target class, as loading it anew would make.
    Class* embeddedClass = embedded->getClassExpression() != nullptr ? embedded->getCompatibilityClass() : getTargetClass();
    if (embeddedClass != object->getClass())
        return false;
    importer.enter (embedded);
    object->load (importer);
    importer.leave();
    return true;
}

bool ObjectOwnedPointer::load (ObjectImporter& importer)
{
    if (loadIntoExistingObject (importer))
        return true;

    Object* loaded = nullptr;
    if (! importer.readObject (this, loaded, getTargetClass()))
        return false;
    // Held once while set runs, so that a loaded object of count 0 is not deleted on the way.
    if (loaded != nullptr)
        loaded->incrementReferenceCounter();
    set (loaded, true);
    if (loaded != nullptr)
        loaded->decrementReferenceCounter (false);
    return true;
}

//==============================================================================
void ObjectOwnedPointer::initializeObject()
{
    Object::initializeObject();
    if (object == nullptr)
        return;
    if (! object->isObjectInitialized())
        object->callInitializeObject (getSpace(), nullptr, this);
    else
        object->setParent (this);
}

void ObjectOwnedPointer::deinitializeObject()
{
    if (isStrictlyOwnedBy (object, this))
        object->callDeinitializeObject();
    Object::deinitializeObject();
}

void ObjectOwnedPointer::markObjectsAsBeingDestroyed()
{
    Object::markObjectsAsBeingDestroyed();
    if (isStrictlyOwnedBy (object, this))
        object->markObjectsAsBeingDestroyed();
}

//==============================================================================
bool OwnedPointerIsSet::doesAcceptObject (Object* candidate)
{
    auto* pointer = dynamic_cast<ObjectOwnedPointer*> (candidate);
    return pointer != nullptr && pointer->get() != nullptr;
}

bool OwnedPointerIsReset::doesAcceptObject (Object* candidate)
{
    auto* pointer = dynamic_cast<ObjectOwnedPointer*> (candidate);
    return pointer != nullptr && pointer->get() == nullptr;
}

//==============================================================================
juce::var ObjectOwnedPointer::saveToJson (uint32_t flags) const
{
    return saveObjectToJsonWithClass (object, getTargetClass(), flags);
}

// An object of the class the value asks for loads in place and keeps its identity.
bool ObjectOwnedPointer::loadFromJson (ExecutionContext& context, const juce::var& value)
{
    if (value.isVoid())
    {
        reset();
        return true;
    }
    juce::var content;
    if (object != nullptr && getJsonObjectClass (value, getTargetClass(), content) == object->getClass())
        return loadObjectFromJson (content, *object);
    juce::String error;
    Object* created = createObjectFromJsonWithClass (value, getTargetClass(), nullptr, &error);
    if (created == nullptr)
    {
        context.error (error);
        return false;
    }
    set (created);
    return true;
}

} // namespace tov
