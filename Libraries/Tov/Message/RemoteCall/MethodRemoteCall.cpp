#include "MethodRemoteCall.h"

namespace tov
{

TOV_BEGIN_CLASS (MethodRemoteCall)
    TOV_VARIABLE (self)
    TOV_VARIABLE (method)
TOV_END_CLASS()

MethodRemoteCall::MethodRemoteCall()
{
    self.setParent (this);
    method.setParent (this);
}

MethodRemoteCall::MethodRemoteCall (const Object& target, Method* methodToCall)
    : MethodRemoteCall()
{
    // By address: the call travels by its state, and the callee finds self in its own space.
    self.setAddressOf (const_cast<Object*> (&target), false);
    method.set (methodToCall, false);
}

Object* MethodRemoteCall::performCall (ExecutionContext& context, const Object&, MessageTarget&) const
{
    auto* target = self.get();
    if (target == nullptr)
        return reportFailure (context, "MethodRemoteCall error: self is not set");
    if (method.get() == nullptr)
        return reportFailure (context, "MethodRemoteCall error: method is not set");
    return method->callOnThis (*target);
}

} // namespace tov
