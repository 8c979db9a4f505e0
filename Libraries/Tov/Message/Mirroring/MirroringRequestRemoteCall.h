#pragma once

#include "../RemoteCall/RemoteCall.h"
#include "../../Atomic/String.h"

namespace tov
{

/** Asks a peer for a mirror of one of its spaces: the callee makes the caller a mirroring
    target of the space, then answers the deep state of the whole space, a StateObject holding
    the state of the space's root pointer. Diffs follow from then on, every change made after
    the snapshot being in one of them. */
class MirroringRequestRemoteCall : public RemoteCall
{
public:
    TOV_DECLARE_CLASS (MirroringRequestRemoteCall, RemoteCall)

    MirroringRequestRemoteCall();
    explicit MirroringRequestRemoteCall (const juce::String& spaceName);

    String remoteSpaceName;

protected:
    Object* performCall (ExecutionContext& context, const Object& callerIdentifier, MessageTarget& incomingTarget) const override;
};

} // namespace tov
