#pragma once

#include "RemoteCall.h"
#include "../../Core/SingletonMethod.h"
#include "../../Pointer/OwnedPointer.h"

namespace tov
{

/** A remote call of a method on a process-wide object of the callee, which the method names
    itself (Program::getSoftwareVersion, say): no object of the callee needs an address. */
class SingletonMethodRemoteCall : public RemoteCall
{
public:
    TOV_DECLARE_CLASS (SingletonMethodRemoteCall, RemoteCall)

    SingletonMethodRemoteCall();
    /** Takes ownership of the method. */
    explicit SingletonMethodRemoteCall (SingletonMethod* method);

    OwnedPointer<SingletonMethod> method;

protected:
    /** The method on its singleton; an error status when it is not set. */
    Object* performCall (ExecutionContext& context, const Object& callerIdentifier, MessageTarget& incomingTarget) const override;
};

} // namespace tov
