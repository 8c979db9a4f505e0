#pragma once

#include "Class.h"
#include "Object.h"

namespace tov
{

/** The class that a pointer's or a container's class names by its "target" attribute (Object
    when it names none), looked up on first use and forgotten when the owner changes class. */
class TargetClassCache
{
public:
    Class* get (const Object& owner) const
    {
        if (cached == nullptr)
            cached = owner.getClass()->getClassAttribute ("target", &Object::staticClass);
        return cached;
    }

    void set (Class* targetClass) noexcept              { cached = targetClass; }
    void forget() noexcept                               { cached = nullptr; }

private:
    mutable Class* cached = nullptr;
};

} // namespace tov
