#include "WeakPointerStandIn.h"
#include "Object.h"

namespace tov
{

WeakPointerStandIn::WeakPointerStandIn (Object& targetObject)
    : target (&targetObject)
{
    attachObject (target);
}

void WeakPointerStandIn::forget (Object* object)
{
    if (object != target)
        return;
    detachObject (object);
    target = nullptr;
}

} // namespace tov
