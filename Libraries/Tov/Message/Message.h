#pragma once

#include "../Core/Object.h"

namespace tov
{

class ExecutionContext;
class MessageTarget;

/** A unit of work sent to a peer, which executes itself on arrival.

    Messages travel in envelops (see Envelop), are posted to message targets and run on the
    thread of the service that receives them, with no lock held. Whoever takes a message takes
    ownership of it, and deletes it through deleteThis when it cannot pass it on.
*/
class Message : public Object
{
public:
    TOV_DECLARE_CLASS (Message, Object)

    /** Runs the message on the receiver. senderIdentifier is the identifier to answer to;
        incomingTarget is the receiving peer's incoming target. */
    virtual void process (ExecutionContext& context, const Object& senderIdentifier, MessageTarget& incomingTarget) const = 0;
};

} // namespace tov
