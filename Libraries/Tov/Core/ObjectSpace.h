#pragma once

#include "UniqueIdentifier.h"
#include <juce_core/juce_core.h>

namespace tov
{

class Object;

/** The registry of the live objects of one world, which it tells its observers about.

    Objects call these hooks as they are initialised, counted, changed and destroyed.
*/
class ObjectSpace
{
public:
    virtual ~ObjectSpace() = default;

    virtual juce::String getName() const                            { return name; }
    void setName (const juce::String& newName)                      { name = newName; }

    /** Registers the object; the space may assign its identifier. */
    virtual void addObject (Object* object, UniqueIdentifier identifier) {}
    virtual void removeObject (Object* object, UniqueIdentifier identifier) {}
    virtual Object* getObject (UniqueIdentifier identifier) const   { return nullptr; }

    virtual void sendObjectCreated (Object* object)                 {}
    virtual void sendObjectChanged (Object* object)                 {}
    virtual void sendObjectPreDeleted (Object* object)              {}
    virtual void sendObjectDestroyed (Object* object)               {}

private:
    juce::String name;
};

} // namespace tov
