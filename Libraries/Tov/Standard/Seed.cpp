#include "Seed.h"
#include "../Atomic/Integer.h"

namespace tov
{

TOV_BEGIN_CLASS (Seed)
    TOV_VARIABLE (value)
    TOV_VARIABLE (incrementAtActivation)
TOV_END_CLASS()

Seed::Seed (int64_t newValue, bool shouldIncrement) : value (newValue), incrementAtActivation (shouldIncrement)
{
}

Seed::Seed (const Seed& other) : Object (other), value (other.value), incrementAtActivation (other.incrementAtActivation)
{
}

void Seed::activate (bool notify)
{
    if (incrementAtActivation.get())
        value.increment (1, notify);
}

bool Seed::isConvertibleTo (const Object& target) const
{
    return dynamic_cast<const Integer*> (&target) != nullptr || Object::isConvertibleTo (target);
}

void Seed::convertToObject (Object& target) const
{
    if (dynamic_cast<Integer*> (&target) != nullptr)
        value.convertToObject (target);
    else
        Object::convertToObject (target);
}

} // namespace tov
