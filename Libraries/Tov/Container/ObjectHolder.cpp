#include "ObjectHolder.h"

namespace tov
{

ObjectHolder::~ObjectHolder()
{
    delete object;
}

void ObjectHolder::initializeHolder (Class* objectClass, Object* owner)
{
    if (objectClass == nullptr || (object != nullptr && object->getClass() == objectClass))
        return;
    delete object;
    object = objectClass->createObject (owner);
    // From here on it is a member of its owner, as if declared in it.
    if (object != nullptr)
        object->setStaticAllocationFlag();
}

Class* ObjectHolder::getClass() const
{
    return object != nullptr ? object->getClass() : nullptr;
}

void ObjectHolder::setClass (Class* objectClass)
{
    initializeHolder (objectClass, object != nullptr ? object->getParent() : nullptr);
}

juce::String ObjectHolder::toString() const
{
    return object != nullptr ? object->toString() : juce::String();
}

} // namespace tov
