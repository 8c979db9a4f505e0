#include "RemoteCall.h"
#include "RemoteCallQueryMessage.h"
#include "ReturnedValueCompletionRoutine.h"
#include "ThreadAwareEnvelopQueueMessageTarget.h"
#include "../Envelop.h"
#include "../Peer.h"
#include "../../Atomic/PositiveInteger.h"
#include "../../Core/Class.h"
#include "../../Standard/Service.h"
#include "../../Standard/SuccessStatus.h"

namespace tov
{

TOV_BEGIN_CLASS (RemoteCall)
TOV_END_CLASS()

// The copy is what the far side will see, made through the state as the wire would; the caller
// keeps its own object.
static Object* copyThroughState (const Object& call)
{
    ExecutionContext privateContext;
    return Object::createFromState (privateContext, call.makeState (false, true));
}

bool RemoteCall::callPerformAsync (Peer& peer, MessageTarget& target, AsyncCompletionRoutine& routine, Object* callIdentifier) const
{
    if (callIdentifier == nullptr)
        callIdentifier = new PositiveInteger ((int64_t) peer.getNewAutomaticRemoteCallIdentifier());

    // The message may die on another thread as soon as it is posted: what this thread needs
    // afterwards is a key of its own.
    ObjectOwnedPointer key;
    key.set (callIdentifier->clone(), false);

    // Entered before anything is sent, so that the answer cannot come first.
    peer.pushCompletionRoutine (*callIdentifier, routine);
    auto* message = new RemoteCallQueryMessage (static_cast<RemoteCall*> (copyThroughState (*this)), callIdentifier);
    auto* envelop = peer.getIncomingMessageTarget()->createEnvelopAsSender (message, nullptr);
    if (envelop != nullptr && target.postEnvelop (envelop))
        return true;

    peer.popCompletionRoutineFromIdentifier (*key);
    routine.complete (*key, nullptr);
    return false;
}

Object* RemoteCall::callPerform (Peer& peer, MessageTarget& target, size_t timeOutMilliseconds, Object* callIdentifier) const
{
    ReturnedValueCompletionRoutine routine;
    routine.setParent (&peer);
    if (! callPerformAsync (peer, target, routine, callIdentifier))
        return nullptr;

    auto* service = Service::getCurrentService();
    if (service == nullptr)
        return nullptr;
    // A late answer finds the routine dead, through the table's weak pointer, and is dropped.
    if (! service->updateUntilPointerIsSet ("call " + getFriendlyName(), routine.returnedValue, timeOutMilliseconds, nullptr)
        || routine.failed)
        return nullptr;
    return routine.returnedValue.release();
}

bool RemoteCall::callPerformAndCheckSuccessStatus (ExecutionContext& context, Peer& peer, MessageTarget& target,
                                                   size_t timeOutMilliseconds, Object* callIdentifier) const
{
    auto* result = callPerform (peer, target, timeOutMilliseconds, callIdentifier);
    if (auto* status = dynamic_cast<SuccessStatus*> (result))
    {
        context.status (*status);
        const bool succeeded = ! status->isError();
        status->deleteThis();
        return succeeded;
    }
    context.error (getClass()->getFriendlyName() + " returned an unexpected value!");
    if (result != nullptr)
        result->deleteThis();
    return false;
}

Object* RemoteCall::reportFailure (ExecutionContext& context, const juce::String& message)
{
    auto* status = new SuccessStatus (SuccessStateEnum::error, message);
    context.status (*status);
    return status;
}

} // namespace tov
