#pragma once

#include "AsyncCompletionRoutine.h"
#include "../IdentifierMap.h"
#include "../../Pointer/WeakPointer.h"
#include <memory>

namespace tov
{

/** The completion routines of a peer's calls that wait for their answers, by call identifier.

    Each entry holds its own copy of the identifier and a weak pointer to the routine. The lock
    covers the table; the routines that cancelAll completes run with it held.
*/
class CompletionRoutineTable
{
public:
    CompletionRoutineTable() = default;
    ~CompletionRoutineTable();

    /** An entry with an equal identifier is given the new routine. */
    void push (const Object& callIdentifier, AsyncCompletionRoutine& routine);
    /** Takes the entry out: its routine, or null when there is none or it has died. */
    AsyncCompletionRoutine* pop (const Object& callIdentifier);
    /** Completes every living routine with a null result and empties the table. */
    void cancelAll();
    size_t size() const;

private:
    mutable juce::CriticalSection lock;
    IdentifierMap<std::unique_ptr<WeakPointer<AsyncCompletionRoutine>>> entries;

    JUCE_DECLARE_NON_COPYABLE (CompletionRoutineTable)
};

} // namespace tov
