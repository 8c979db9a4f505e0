#include "RemoteCallQueryMessage.h"
#include "RemoteCallResultMessage.h"
#include "../Envelop.h"
#include "../MessageTarget.h"
#include "../../Standard/ExecutionContext.h"
#include "../../Standard/Program.h"
#include "../../Standard/SuccessStatus.h"

namespace tov
{

TOV_BEGIN_CLASS (RemoteCallQueryMessage)
    TOV_VARIABLE (remoteCall)
    TOV_VARIABLE (callIdentifier)
TOV_END_CLASS()

RemoteCallQueryMessage::RemoteCallQueryMessage()
{
    remoteCall.setParent (this);
    callIdentifier.setParent (this);
}

RemoteCallQueryMessage::RemoteCallQueryMessage (RemoteCall* call, Object* identifier)
    : RemoteCallQueryMessage()
{
    remoteCall.set (call, false);
    callIdentifier.set (identifier, false);
}

void RemoteCallQueryMessage::process (ExecutionContext& context, const Object& senderIdentifier, MessageTarget& incomingTarget) const
{
    if (remoteCall.get() == nullptr || callIdentifier.get() == nullptr)
        return;

    context.enter ("Perform RPC " + remoteCall->toString());
    auto* result = remoteCall->performCall (context, senderIdentifier, incomingTarget);
    reportResult (context, result);
    context.leave();

    // The answer goes back the way the query came: over its connection when the sender is a
    // far target, since the sender identifier then names the connection too.
    auto* envelop = incomingTarget.createEnvelopAsSender (new RemoteCallResultMessage (callIdentifier->clone(), result), nullptr);
    bool targetNotFound = false;
    if (envelop == nullptr || ! Program::get().postEnvelopToMessageTarget (senderIdentifier, envelop, &targetNotFound))
        context.error ("Could not send result message to " + senderIdentifier.toString() + (targetNotFound ? ": Target not found" : ""));
}

void RemoteCallQueryMessage::reportResult (ExecutionContext& context, const Object* result)
{
    if (result == nullptr)
        context.information ("Null result");
    else if (auto* status = dynamic_cast<const SuccessStatus*> (result))
        context.status (*status);
    else
        context.information (" => " + result->toString());
}

} // namespace tov
