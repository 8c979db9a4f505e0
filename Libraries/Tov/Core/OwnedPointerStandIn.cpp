#include "OwnedPointerStandIn.h"
#include "Object.h"

namespace tov
{

OwnedPointerStandIn::~OwnedPointerStandIn()
{
    set (nullptr);
}

void OwnedPointerStandIn::set (Object* newObject)
{
    if (newObject == object)
        return;
    if (object != nullptr)
        object->decrementReferenceCounter (true);
    object = newObject;
    if (newObject != nullptr)
        newObject->incrementReferenceCounter();
}

} // namespace tov
