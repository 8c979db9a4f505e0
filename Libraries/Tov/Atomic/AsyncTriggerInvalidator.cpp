#include "AsyncTriggerInvalidator.h"

namespace tov
{

void AsyncTriggerInvalidator::changedCallback (Object* object, Object* changedObject)
{
    if (object != changedObject)
        return;
    if (auto* target = trigger.get())
        target->trig();
}

} // namespace tov
