#include "SingletonMethod.h"

namespace tov
{

TOV_BEGIN_CLASS (SingletonMethod)
TOV_END_CLASS()

Object* SingletonMethod::call() const
{
    auto* singleton = getSingleton();
    return singleton != nullptr ? callOnThis (*singleton) : nullptr;
}

} // namespace tov
