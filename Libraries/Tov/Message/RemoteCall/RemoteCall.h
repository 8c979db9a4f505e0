#pragma once

#include "../../Core/Object.h"

namespace tov
{

class AsyncCompletionRoutine;
class ExecutionContext;
class MessageTarget;
class Peer;

/** An operation performed on another peer, whose result comes back to the caller.

    A call is a reflected object: it travels by its state in a RemoteCallQueryMessage, is
    performed on the callee's service thread, and its result comes back in a
    RemoteCallResultMessage to the caller's peer, which hands it to the completion routine
    waiting under the call's identifier.

    The caller waits for the answer in a nested update loop of its service (callPerform), or
    gives a completion routine and goes on (callPerformAsync). Nothing times out by itself:
    a synchronous wait ends at its time-out; an asynchronous call whose answer never comes is
    completed only by Peer::cancelAllCompletionRoutines, which the peer's end also runs.
*/
class RemoteCall : public Object
{
public:
    TOV_DECLARE_CLASS (RemoteCall, Object)

    /** Sends a copy of this call to the target in the name of the peer; the routine is completed
        on the peer's service thread when the answer comes. A failure to send completes it at
        once, with null, on the calling thread, and answers false. The call identifier may be
        null for the peer's next automatic one; the call takes ownership of it. */
    bool callPerformAsync (Peer& peer, MessageTarget& target, AsyncCompletionRoutine& routine, Object* callIdentifier) const;

    /** Sends the call and runs passes of the calling thread's service until the answer comes:
        the result, which the caller owns, or null when the call failed, returned nothing, timed
        out (reported as the service's wait reports it), or the thread has no service. Messages
        keep being processed meanwhile: expect re-entrance. */
    Object* callPerform (Peer& peer, MessageTarget& target, size_t timeOutMilliseconds, Object* callIdentifier) const;

    /** callPerform for a call that answers a SuccessStatus, which goes to the context: false when
        it is an error, when nothing came, or when something else came. */
    bool callPerformAndCheckSuccessStatus (ExecutionContext& context, Peer& peer, MessageTarget& target,
                                           size_t timeOutMilliseconds, Object* callIdentifier) const;

protected:
    friend class RemoteCallQueryMessage;

    /** On the callee's service thread: performs the call; the result, or null, belongs to the caller. */
    virtual Object* performCall (ExecutionContext& context, const Object& callerIdentifier, MessageTarget& incomingTarget) const = 0;

    /** An error status with that text, reported on the context and returned as a call's result. */
    static Object* reportFailure (ExecutionContext& context, const juce::String& message);
};

} // namespace tov
