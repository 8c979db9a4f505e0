#include "Boolean.h"
#include "Number.h"
#include "../Core/ObjectExporter.h"
#include "../Core/ObjectImporter.h"

namespace tov
{

TOV_BEGIN_CLASS (Boolean, { "friendlyName", "\"On/off option\"" })
TOV_END_CLASS()

void Boolean::set (bool newValue, bool notify)
{
    if (newValue == value)
        return;
    value = newValue;
    if (notify)
        changed();
}

bool Boolean::equalsSameClass (const Object& other) const
{
    return value == static_cast<const Boolean&> (other).value;
}

void Boolean::copyTo (Object& target) const
{
    copyClassTo (target);
    if (auto* boolean = dynamic_cast<Boolean*> (&target))
        boolean->value = value;
}

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

void Boolean::save (ObjectExporter& exporter) const
{
    exporter.writeBoolean (value);
}

bool Boolean::load (ObjectImporter& importer)
{
    bool newValue = false;
    if (! importer.readBoolean (newValue))
        return false;
    set (newValue);
    return true;
}

} // namespace tov
