#include "SingletonMethodRemoteCall.h"

namespace tov
{

TOV_BEGIN_CLASS (SingletonMethodRemoteCall)
    TOV_VARIABLE (method)
TOV_END_CLASS()

SingletonMethodRemoteCall::SingletonMethodRemoteCall()
{
    method.setParent (this);
}

SingletonMethodRemoteCall::SingletonMethodRemoteCall (SingletonMethod* methodToCall)
    : SingletonMethodRemoteCall()
{
    method.set (methodToCall, false);
}

Object* SingletonMethodRemoteCall::performCall (ExecutionContext& context, const Object&, MessageTarget&) const
{
    if (method.get() == nullptr)
        return reportFailure (context, "SingletonMethodRemoteCall error: method is not set");
    return method->call();
}

} // namespace tov
