#pragma once

#include "RemoteCall.h"
#include "../Message.h"
#include "../../Pointer/OwnedPointer.h"

namespace tov
{

/** Carries a remote call to the callee: performed on arrival, it answers the sender with a
    RemoteCallResultMessage under the same call identifier. */
class RemoteCallQueryMessage : public Message
{
public:
    TOV_DECLARE_CLASS (RemoteCallQueryMessage, Message)

    RemoteCallQueryMessage();
    /** Takes ownership of both. */
    RemoteCallQueryMessage (RemoteCall* call, Object* callIdentifier);

    /** Performs the call in a block "Perform RPC <call>" of the context, reports its result
        there, and posts the result to the sender; a failure to post is reported too. */
    void process (ExecutionContext& context, const Object& senderIdentifier, MessageTarget& incomingTarget) const override;

    OwnedPointer<RemoteCall> remoteCall;
    ObjectOwnedPointer callIdentifier;

private:
    static void reportResult (ExecutionContext& context, const Object* result);
};

} // namespace tov
