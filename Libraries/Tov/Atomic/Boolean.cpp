#include "Boolean.h"
#include "Number.h"

namespace tov
{

TOV_BEGIN_CLASS (Boolean, { "friendlyName", "\"On/off option\"" })
TOV_END_CLASS()

bool Boolean::isConvertibleTo (const Object& target) const
{
    return dynamic_cast<const Number*> (&target) != nullptr || Object::isConvertibleTo (target);
}

void Boolean::convertToObject (Object& target) const
{
    if (auto* number = dynamic_cast<Number*> (&target))
        number->makeValidAndSet (value ? 1.0 : 0.0);
    else
        Object::convertToObject (target);
}

} // namespace tov
