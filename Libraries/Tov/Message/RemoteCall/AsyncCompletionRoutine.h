#pragma once

#include "../../Core/Object.h"

namespace tov
{

/** What a caller wants done when the answer to a remote call comes back.

    The caller's peer keeps waiting routines by call identifier, and weakly: a routine that has
    died is simply not called, and its answer, should it still come, is deleted.
*/
class AsyncCompletionRoutine : public Object
{
public:
    TOV_DECLARE_CLASS (AsyncCompletionRoutine, Object)

    /** Takes ownership of the result. A null result means that the call failed or was cancelled. */
    virtual void complete (const Object& callIdentifier, Object* result) = 0;
};

} // namespace tov
