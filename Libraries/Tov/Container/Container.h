#pragma once

#include "../Core/Object.h"

namespace tov
{

/** The common base of vectors, maps and selections: objects that hold other objects through
    their reference counters and are their parents.

    The ownership steps below are the only way containers take, lend and give back their
    elements, so that an element shared by two containers lives as long as either holds it,
    and is deinitialised only by the one that holds it alone.
*/
class Container : public Object
{
public:
    TOV_DECLARE_CLASS (Container, Object)

    virtual size_t size() const = 0;
    virtual void clear (bool notify = true) = 0;

    bool isEmpty() const                             { return size() == 0; }
    bool isNotEmpty() const                          { return size() != 0; }

    /** Holds the object once more; it becomes the container's child, and is initialised in the
        container's space when the container already is and it is not. Returns the object. */
    static Object* addOwnedObject (Object* object, Object* container);
    /** Lets go of the object in the slot, deleting it when nobody else holds it; the slot
        becomes null. The object's parent is cleared when it was the container. */
    static void releaseOwnedObject (Object*& slot, const Object* container);

    /** Copies through the saved form: any two containers of one class copy alike, whatever
        their elements. */
    void copyTo (Object& target) const override;
    /** The class name. */
    juce::String toString() const override;

protected:
    /** An element that is not initialised yet is initialised in this container's space; one
        that is gets this container as parent. */
    void initializeOwnedObject (Object* object);
    /** Deinitialises the element only when this container holds it alone. */
    void deinitializeOwnedObject (Object* object);
    /** Marks the element as being destroyed only when this container holds it alone. */
    void markOwnedObjectAsBeingDestroyed (Object* object);
    /** Lets go of what the container held before a rebuild; an object that is also among the
        new elements (stillHeld) keeps this container as parent. */
    void releasePreviousObject (Object* object, bool stillHeld);
    /** Deletes an object that loading made and the container refused. One that somebody holds
        (found in the space by its identifier) is left alone. */
    static void destroyRefusedObject (Object* object);
};

} // namespace tov
