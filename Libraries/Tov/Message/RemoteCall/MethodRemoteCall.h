#pragma once

#include "RemoteCall.h"
#include "../../Core/Method.h"
#include "../../Pointer/ObjectWeakPointer.h"
#include "../../Pointer/OwnedPointer.h"

namespace tov
{

/** A remote call of a method on an object of the callee: self points at the object by its
    address, which the callee resolves in its own space of that name. */
class MethodRemoteCall : public RemoteCall
{
public:
    TOV_DECLARE_CLASS (MethodRemoteCall, RemoteCall)

    MethodRemoteCall();
    /** Points at self by its address, which it has only in a space (without one, the callee
        answers that self is not set), and takes ownership of the method. */
    MethodRemoteCall (const Object& self, Method* method);

    ObjectWeakPointer self;
    OwnedPointer<Method> method;

protected:
    /** The method's callOnThis on self's target; an error status when either is not set. */
    Object* performCall (ExecutionContext& context, const Object& callerIdentifier, MessageTarget& incomingTarget) const override;
};

} // namespace tov
