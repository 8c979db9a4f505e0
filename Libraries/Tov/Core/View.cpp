#include "View.h"
#include "Object.h"

namespace tov
{

View::~View()
{
    detachAllObjects();
}

void View::attachObject (Object* object, bool notifyNow)
{
    if (isAttachedTo (object))
        return;
    object->addView (this);
    attachedObjects.insert (object);
    if (notifyNow)
        changedCallback (object, object);
}

void View::detachObject (Object* object)
{
    if (attachedObjects.erase (object) > 0)
        object->removeView (this);
}

void View::detachAllObjects()
{
    for (auto* object : attachedObjects)
        object->removeView (this);
    attachedObjects.clear();
}

void View::detachAllObjectsExcept (Object* keep)
{
    const bool wasAttached = isAttachedTo (keep);
    for (auto* object : attachedObjects)
        if (object != keep)
            object->removeView (this);
    attachedObjects.clear();
    if (wasAttached)
        attachedObjects.insert (keep);
}

bool View::isAttachedTo (const Object* object) const
{
    return attachedObjects.count (const_cast<Object*> (object)) > 0;
}

} // namespace tov
