#include "MirroringRequestRemoteCall.h"
#include "../MessageTarget.h"
#include "../../Core/ObjectExporter.h"
#include "../../Core/ObjectSpace.h"
#include "../../Core/ObjectSpaceProvider.h"
#include "../../Core/StateObjectExporter.h"
#include "../../Standard/ExecutionContext.h"
#include "../../Standard/StateObject.h"

namespace tov
{

TOV_BEGIN_CLASS (MirroringRequestRemoteCall)
    TOV_VARIABLE (remoteSpaceName)
TOV_END_CLASS()

MirroringRequestRemoteCall::MirroringRequestRemoteCall()
{
    remoteSpaceName.setParent (this);
}

MirroringRequestRemoteCall::MirroringRequestRemoteCall (const juce::String& spaceName)
    : MirroringRequestRemoteCall()
{
    remoteSpaceName.set (spaceName, false);
}

// The caller becomes a target before the snapshot is taken: a change made after the snapshot
// is then in a later diff, and none is lost between the two.
Object* MirroringRequestRemoteCall::performCall (ExecutionContext& context, const Object& callerIdentifier, MessageTarget& incomingTarget) const
{
    auto* space = ObjectSpaceProvider::getSpaceByName (*this, remoteSpaceName.get());
    if (space == nullptr)
    {
        context.error ("Could not find space " + remoteSpaceName.get());
        return nullptr;
    }
    ObjectOwnedPointer ownIdentifier;
    if (! incomingTarget.loadIdentifier (ownIdentifier))
    {
        context.error ("Mirroring request cannot load MessageTarget identifier");
        return nullptr;
    }
    space->addMirroringTargetIdentifier (*ownIdentifier, callerIdentifier);
    return new StateObject (StateObjectExporter::make (space->getRootObjectPointer(), exportTransientVariables, true));
}

} // namespace tov
