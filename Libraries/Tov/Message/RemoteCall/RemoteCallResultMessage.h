#pragma once

#include "../Message.h"
#include "../../Pointer/ObjectOwnedPointer.h"

namespace tov
{

/** Carries the result of a remote call back to the caller's peer, which hands it to the
    completion routine waiting under the call identifier, or deletes it when none waits (the
    late answer to a call that timed out). */
class RemoteCallResultMessage : public Message
{
public:
    TOV_DECLARE_CLASS (RemoteCallResultMessage, Message)

    RemoteCallResultMessage();
    /** Takes ownership of both; the result may be null. */
    RemoteCallResultMessage (Object* callIdentifier, Object* result);

    void process (ExecutionContext& context, const Object& senderIdentifier, MessageTarget& incomingTarget) const override;

    ObjectOwnedPointer callIdentifier;
    ObjectOwnedPointer resultValue;
};

} // namespace tov
