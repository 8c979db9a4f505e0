#include "NamedObjectMap.h"
#include "../Core/Json.h"
#include "../Core/ClassRegistry.h"
#include "../Standard/ExecutionContext.h"

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

//==============================================================================
// The class a key stands for: its name with the first letter in upper case.
static Class* getClassOfKey (const juce::String& key)
{
    return getClass (key.substring (0, 1).toUpperCase() + key.substring (1));
}

juce::var NamedObjectMap::saveToJson (uint32_t flags) const
{
    auto* json = new juce::DynamicObject();
    juce::var result (json);
    for (auto& entry : getLowLevelContainer())
    {
        const auto key = static_cast<const String*> (entry.key)->get();
        Class* keyClass = getClassOfKey (key);
        json->setProperty (key, saveObjectToJsonWithClass (entry.value, keyClass != nullptr ? keyClass : getValueClass(), flags));
    }
    return result;
}

bool NamedObjectMap::loadFromJson (ExecutionContext& context, const juce::var& value)
{
    auto* json = value.getDynamicObject();
    if (json == nullptr)
        return ! (bool) value;
    clear (false);
    bool result = true;
    for (auto& property : json->getProperties())
    {
        const auto key = property.name.toString();
        Class* keyClass = getClassOfKey (key);
        juce::String error;
        if (Object* loaded = createObjectFromJsonWithClass (property.value, keyClass != nullptr ? keyClass : getValueClass(), nullptr, &error))
            insert (key, loaded, false);
        else
        {
            context.error (error + " in property '" + key + "'");
            result = false;
        }
    }
    changed();
    return result;
}

} // namespace tov
