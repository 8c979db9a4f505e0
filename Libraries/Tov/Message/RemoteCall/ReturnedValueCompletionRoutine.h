#pragma once

#include "AsyncCompletionRoutine.h"
#include "../../Pointer/ObjectOwnedPointer.h"

namespace tov
{

/** Keeps the result of a call for a caller that waits for it: the routine of RemoteCall::callPerform.

    The wait ends when returnedValue is set. A failed or cancelled call sets it too, to a marker
    object of no meaning, and sets failed, so that the waiter stops waiting at once.
*/
class ReturnedValueCompletionRoutine : public AsyncCompletionRoutine
{
public:
    TOV_DECLARE_CLASS (ReturnedValueCompletionRoutine, AsyncCompletionRoutine)

    ReturnedValueCompletionRoutine();

    void complete (const Object& callIdentifier, Object* result) override;

    ObjectOwnedPointer returnedValue;
    bool failed = false;
};

} // namespace tov
