#pragma once

#include <unordered_set>

namespace tov
{

class Object;
class ObjectWeakPointer;

/** An observer of objects.

    An object keeps its views in a list and a view keeps the set of objects it
    is attached to; each side detaches the other. Callbacks may detach this or
    other views, or attach new ones: the object's walk over its views survives it.
*/
class View
{
public:
    View() = default;
    View (const View&) = delete;
    View& operator= (const View&) = delete;
    virtual ~View();

    /** Called when object, or something embedded in it, changed; changedObject is the one that did. */
    virtual void changedCallback (Object* object, Object* changedObject) {}
    virtual void deinitializedCallback (Object* object) {}
    virtual void deletedCallback (Object* object) {}
    virtual void messageCallback (void* message) {}
    /** A weak pointer to an object this view is attached to changed. */
    virtual void weakPointerToTargetChanged (ObjectWeakPointer* source) {}

    /** Does nothing when already attached; with notifyNow calls changedCallback (object, object). */
    void attachObject (Object* object, bool notifyNow = false);
    void detachObject (Object* object);
    void detachAllObjects();
    void detachAllObjectsExcept (Object* object);

    bool isAttachedTo (const Object* object) const;
    const std::unordered_set<Object*>& getAttachedObjects() const noexcept { return attachedObjects; }

    /** True while one of this view's callbacks runs. */
    bool isInsideCallback() const noexcept { return insideCallback; }

private:
    friend class Object;
    // No buckets until the first object: most weak pointers, which are views, never attach.
    std::unordered_set<Object*> attachedObjects;
    bool insideCallback = false;
};

} // namespace tov
