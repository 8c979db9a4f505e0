#include "RemoteCallResultMessage.h"
#include "AsyncCompletionRoutine.h"
#include "../MessageTarget.h"
#include "../Peer.h"

namespace tov
{

TOV_BEGIN_CLASS (RemoteCallResultMessage)
    TOV_VARIABLE (callIdentifier)
    TOV_VARIABLE (resultValue)
TOV_END_CLASS()

RemoteCallResultMessage::RemoteCallResultMessage()
{
    callIdentifier.setParent (this);
    resultValue.setParent (this);
}

RemoteCallResultMessage::RemoteCallResultMessage (Object* identifier, Object* result)
    : RemoteCallResultMessage()
{
    callIdentifier.set (identifier, false);
    resultValue.set (result, false);
}

void RemoteCallResultMessage::process (ExecutionContext&, const Object&, MessageTarget& incomingTarget) const
{
    if (callIdentifier.get() == nullptr)
        return;

    // The result leaves the message, which is read-only to its processing but done with.
    auto* result = const_cast<ObjectOwnedPointer&> (resultValue).release();
    if (result != nullptr)
        result->setParent (&incomingTarget);

    auto* peer = dynamic_cast<Peer*> (incomingTarget.getParent());
    auto* routine = peer != nullptr ? peer->popCompletionRoutineFromIdentifier (*callIdentifier) : nullptr;
    if (routine != nullptr)
        routine->complete (*callIdentifier, result);
    else if (result != nullptr)
        result->deleteThis();
}

} // namespace tov
