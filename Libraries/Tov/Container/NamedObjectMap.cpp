#include "NamedObjectMap.h"

namespace tov
{

TOV_BEGIN_CLASS (NamedObjectMap, { "key", "String" }, { "value", "Object" })
TOV_END_CLASS()

Object* NamedObjectMap::getByValueClass (Class* valueClass, bool notify)
{
    auto name = valueClass->getName();
    name = name.substring (0, 1).toLowerCase() + name.substring (1);
    if (Object* present = find (name))
        return present;
    Object* created = valueClass->createObject (nullptr);
    if (created != nullptr)
        insert (name, created, notify);
    return created;
}

} // namespace tov
