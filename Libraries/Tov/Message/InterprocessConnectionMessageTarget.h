#pragma once

#include "MessageTarget.h"
#include "../Network/InterprocessConnection.h"
#include "../Pointer/WeakPointer.h"

namespace tov
{

/** One far target on one connection, here: what an envelop to it is posted to. The envelop is
    written in its wire form on the posting thread and pushed on the connection's queue.

    Each pair of connection and far target has one such object for the connection's whole life,
    kept in the table of connections; two connections to the same far peer have two.
*/
class InterprocessConnectionMessageTarget : public MessageTarget
{
public:
    TOV_DECLARE_CLASS (InterprocessConnectionMessageTarget, MessageTarget)

    InterprocessConnectionMessageTarget() = default;
    /** Takes ownership of the identifier. */
    InterprocessConnectionMessageTarget (InterprocessConnection& connection, Object* targetIdentifier);

    /** False for a dead connection, one neither connected nor reconnecting by itself, a target
        without identifier, and a connection that does not carry envelops. */
    bool handleEnvelop (Envelop* envelop) override;

    /** The target of that identifier on the connection, made the first time. */
    static MessageTarget& getOrCreateThrough (const InterprocessConnection& connection, const Object& targetIdentifier);
    /** Deletes the connection's targets. */
    static void reset (const InterprocessConnection& connection);

private:
    WeakPointer<InterprocessConnection> connection;
};

} // namespace tov
