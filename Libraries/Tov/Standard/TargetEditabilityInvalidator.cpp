#include "TargetEditabilityInvalidator.h"
#include "Attachable.h"

namespace tov
{

void TargetEditabilityInvalidator::changedCallback (Object*, Object*)
{
    // Asking again declares what the new answer depends on: a switch may bring in new objects.
    // Those already watched stay attached, so that this walk of views sees no view come back.
    auto* target = owner.getTarget();
    owner.targetEditabilityChanged (target != nullptr && target->isEditable (*this));
}

} // namespace tov
