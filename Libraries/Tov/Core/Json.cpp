#include "Json.h"
#include "Class.h"
#include "ClassRegistry.h"
#include "MemberSignature.h"
#include "Object.h"
#include "ObjectExporter.h"
#include "../Atomic/Boolean.h"
#include "../Atomic/Integer.h"
#include "../Atomic/Real.h"
#include "../Atomic/String.h"
#include "../Atomic/Void.h"
#include "../Container/ObjectOwnedVector.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

static const juce::Identifier classKey ("class");
static const juce::Identifier valueKey ("value");

juce::var saveObjectToJson (const Object& object, bool transientVariables, bool withoutDefaults)
{
    return object.saveToJson ((transientVariables ? exportTransientVariables : 0u)
                              | (withoutDefaults ? exportWithoutDefaults : 0u));
}

bool saveObjectToJsonFile (const Object& object, const juce::File& file, bool transientVariables)
{
    const auto text = juce::JSON::toString (saveObjectToJson (object, transientVariables, false), false, 15);
    return file.replaceWithText (text, false, false, "\r\n");
}

bool loadObjectFromJson (const juce::var& value, Object& object, bool, juce::String* error)
{
    if (object.loadFromJson (ExecutionContext::get(), value))
        return true;
    if (error != nullptr)
        *error = "Cannot load " + object.getFriendlyName() + " from Json value " + juce::JSON::toString (value, true);
    return false;
}

bool loadObjectFromJsonFile (const juce::File& file, Object& object)
{
    std::unique_ptr<juce::FileInputStream> stream (file.createInputStream());
    if (stream == nullptr || ! stream->openedOk())
        return false;
    const juce::var value = juce::JSON::parse (*stream);
    if (! (bool) value)
        return false;
    return loadObjectFromJson (value, object);
}

bool loadObjectFromJsonProperties (const juce::NamedValueSet& properties, Object& object, bool, juce::String* error)
{
    auto& context = ExecutionContext::get();
    bool result = true;
    for (auto& property : properties)
    {
        // After the first failure the text names that one; later failures write elsewhere.
        juce::String later;
        auto* text = result ? error : &later;
        const auto name = property.name.toString();
        if (! object.loadVariableFromJson (context, name, property.value, text))
        {
            if (result && error != nullptr)
                *error += " in property '" + name + "'";
            result = false;
        }
    }
    return result;
}

Object* createObjectFromJson (const juce::var& value, Class* objectClass, bool unused, juce::String* error)
{
    if (objectClass == &Object::staticClass)
        objectClass = inferClassFromJson (value);
    if (objectClass == nullptr)
        return nullptr;
    Object* object = objectClass->createObject();
    if (object == nullptr)
        return nullptr;
    if (! loadObjectFromJson (value, *object, unused, error))
    {
        object->deleteThis();
        return nullptr;
    }
    return object;
}

Class* inferClassFromJson (const juce::var& value)
{
    if (value.isVoid())       return &Void::staticClass;
    if (value.isUndefined())  return nullptr;
    if (value.isInt())        return &Integer::staticClass;
    if (value.isInt64())      return nullptr; // deliberately: a 64-bit number has no inferred class
    if (value.isBool())       return &Boolean::staticClass;
    if (value.isDouble())     return &Real::staticClass;
    if (value.isString())     return &String::staticClass;
    // juce::var counts an array as an object too: arrays are asked first.
    if (value.isArray())      return &ObjectOwnedVector::staticClass;
    if (value.isObject())     return &Object::staticClass;
    return nullptr;
}

int findVariableByJsonIdentifier (Class* objectClass, const juce::String& identifier)
{
    if (objectClass == nullptr)
        return -1;
    const size_t count = objectClass->getNumMemberVariables();
    for (size_t i = 0; i < count; ++i)
        if (auto* signature = objectClass->getMemberVariableSignature (i))
            if (getJsonIdentifier (*signature) == identifier)
                return (int) i;
    return -1;
}

juce::String getJsonIdentifier (const VariableSignature& signature)
{
    return signature.getStringAttribute ("jsonIdentifier", signature.getName());
}

juce::String juceVarToString (const juce::var& value)
{
    if (auto* array = value.getArray())
    {
        juce::StringArray texts;
        for (auto& element : *array)
            texts.add (juceVarToString (element));
        return texts.joinIntoString (", ");
    }
    if (auto* object = value.getDynamicObject())
    {
        if (object->hasProperty ("name"))
            return object->getProperty ("name").toString();
        return juce::JSON::toString (value, true);
    }
    return value.toString();
}

const char* juceVarTypeToString (const juce::var& value)
{
    if (value.isVoid())        return "null";
    if (value.isBool())        return "boolean";
    if (value.isDouble())      return "double";
    if (value.isInt() || value.isInt64()) return "integer";
    if (value.isString())      return "string";
    if (value.isArray())       return "array";
    if (value.isObject())      return "object";
    if (value.isUndefined())   return "undefined";
    if (value.isBinaryData())  return "binary";
    if (value.isMethod())      return "method";
    return "unsupported!!!";
}

//==============================================================================
juce::var saveObjectToJsonWithClass (const Object* object, Class* expectedClass, uint32_t flags)
{
    if (object == nullptr)
        return {};
    auto json = object->saveToJson (flags);
    if (object->getClass() == expectedClass)
        return json;
    auto* wrapper = new juce::DynamicObject();
    wrapper->setProperty (classKey, object->getClassName());
    wrapper->setProperty (valueKey, json);
    return juce::var (wrapper);
}

// A wrapper has a "class" naming a known class, and a "value" at most besides.
static Class* getWrappedClass (const juce::var& value)
{
    auto* object = value.getDynamicObject();
    if (object == nullptr || ! object->hasProperty (classKey) || ! object->getProperty (classKey).isString())
        return nullptr;
    const auto& properties = object->getProperties();
    if (properties.size() > 2 || (properties.size() == 2 && ! object->hasProperty (valueKey)))
        return nullptr;
    return getClass (object->getProperty (classKey).toString());
}

Class* getJsonObjectClass (const juce::var& value, Class* expectedClass, juce::var& content)
{
    content = value;
    if (expectedClass == nullptr)
        expectedClass = &Object::staticClass;
    if (auto* wrapped = getWrappedClass (value))
    {
        if (wrapped->inheritsFrom (expectedClass))
        {
            content = value.getProperty (valueKey, {});
            return wrapped;
        }
    }
    if (expectedClass != &Object::staticClass && ! expectedClass->isAbstract())
        return expectedClass;
    auto* inferred = inferClassFromJson (value);
    return inferred != nullptr && inferred->inheritsFrom (expectedClass) ? inferred : nullptr;
}

Object* createObjectFromJsonWithClass (const juce::var& value, Class* expectedClass, Object* parent, juce::String* error)
{
    juce::var content;
    Class* objectClass = getJsonObjectClass (value, expectedClass, content);
    Object* object = objectClass != nullptr ? objectClass->createObject (parent) : nullptr;
    if (object == nullptr)
    {
        if (error != nullptr)
            *error = juce::String ("No class for Json value ") + juceVarTypeToString (value) + " " + juce::JSON::toString (value, true);
        return nullptr;
    }
    if (! loadObjectFromJson (content, *object, false, error))
    {
        object->deleteThis();
        return nullptr;
    }
    return object;
}

bool loadJsonArray (ExecutionContext& context, const juce::var& value, Container& container,
                    const std::function<bool (const juce::var& element, juce::String& error)>& loadElement)
{
    auto* array = value.getArray();
    if (array == nullptr)
    {
        if ((bool) value)
            return false;
        container.clear();
        return true;
    }
    bool result = true;
    for (auto& element : *array)
    {
        juce::String error;
        if (! loadElement (element, error))
        {
            context.error (error);
            result = false;
        }
    }
    return result;
}

} // namespace tov
