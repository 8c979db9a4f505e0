#include "ReturnedValueCompletionRoutine.h"
#include "../../Atomic/Void.h"

namespace tov
{

TOV_BEGIN_CLASS (ReturnedValueCompletionRoutine)
TOV_END_CLASS()

ReturnedValueCompletionRoutine::ReturnedValueCompletionRoutine()
{
    returnedValue.setParent (this);
}

// The marker of a failure is an object of its own, not the program: an owned pointer would
// become the parent of what it holds.
void ReturnedValueCompletionRoutine::complete (const Object&, Object* result)
{
    if (result == nullptr)
    {
        failed = true;
        returnedValue.set (new Void(), false);
        return;
    }
    returnedValue.set (result, false);
}

} // namespace tov
