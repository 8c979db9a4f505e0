#pragma once

#include "AsyncTrigger.h"
#include "../Pointer/WeakPointer.h"
#include "../Standard/ViewVariableDependenciesDeclarator.h"

namespace tov
{

/** Fires a trigger when an object that was declared to it changes itself: what depends on
    those objects is then recomputed once, at the end of the service's pass, however many of
    them changed. Changes that merely climb through a declared object from below are ignored.
*/
class AsyncTriggerInvalidator : public ViewVariableDependenciesDeclarator
{
public:
    AsyncTriggerInvalidator() = default;

    AsyncTrigger* getTrigger() const                 { return trigger.get(); }
    void setTrigger (AsyncTrigger* newTrigger)       { trigger.set (newTrigger, false); }

    void changedCallback (Object* object, Object* changedObject) override;

private:
    WeakPointer<AsyncTrigger> trigger;
};

} // namespace tov
