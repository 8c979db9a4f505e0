// Object: conversion to other classes, saving and loading (State, files, JSON) and hashing.
#include "Object.h"
#include "ClassRegistry.h"
#include "ObjectExporter.h"
#include "ObjectImporter.h"
#include "StateObjectExporter.h"
#include "ComputeHashObjectExporter.h"
#include "Json.h"
#include "MemberSignature.h"
#include "ObjectConverter.h"
#include "ObjectConverters.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

// Converters are asked only once their registry exists: asking must not make it.
static bool hasConverter (const Object& object, Class* targetClass)
{
    auto* converters = ObjectConverters::getInstanceWithoutCreating();
    return converters != nullptr && converters->isConvertibleTo (object, targetClass);
}

bool Object::isConvertibleTo (const Object& target) const
{
    if (getClass() == target.getClass() || hasConverter (*this, target.getClass()))
        return true;
    return target.isConvertibleFrom (*this);
}

bool Object::isConvertibleTo (Class* targetClass) const
{
    if (targetClass != nullptr && hasConverter (*this, targetClass))
        return true;
    auto* defaultObject = targetClass != nullptr ? targetClass->getDefaultObject() : nullptr;
    return defaultObject != nullptr && isConvertibleTo (*defaultObject);
}

bool Object::isConvertibleTo (const juce::String& className) const
{
    auto* targetClass = tov::getClass (className);
    return targetClass != nullptr && isConvertibleTo (targetClass);
}

void Object::convertToObject (Object& target) const
{
    if (getClass() == target.getClass())
        copyTo (target);
    else
        target.convertFrom (*this);
}

bool Object::convertTo (Object& target) const
{
    return convertTo (ExecutionContext::get(), target);
}

bool Object::convertTo (ExecutionContext& context, Object& target) const
{
    auto* converters = ObjectConverters::getInstanceWithoutCreating();
    return convertTo (context, target, converters != nullptr ? converters->getFirstConverter (*this, target.getClass()) : nullptr);
}

bool Object::convertTo (ExecutionContext& context, Object& target, const ObjectConverter* converter) const
{
    return converter == nullptr || converter->convert (context, *this, target, 0);
}

//==============================================================================
void Object::save (ObjectExporter& exporter) const
{
    // An object that has not asked for its class yet (a stack object, say) finds it now.
    auto* ownClass = getClass();
    if (ownClass == nullptr)
        return;
    exporter.setVersionNumber (ownClass->getVersion());
    const size_t count = getNumVariables();
    for (size_t i = 0; i < count; ++i)
    {
        auto* variable = const_cast<Object*> (getVariable (i));
        if (variable->objectClass == nullptr)
            variable->setClass (getVariableSignature (i)->getValueClass());
        saveVariable (exporter, i);
    }
}

void Object::saveVariable (ObjectExporter& exporter, size_t index) const
{
    exporter.saveVariable (*static_cast<VariableSignature*> (getVariableSignature (index)), *getVariable (index));
}

bool Object::load (ObjectImporter& importer)
{
    const auto type = importer.getCurrentType();
    if (type != StateType::variablesType && type != StateType::voidType)
    {
        importer.sendError (getClassName(), "::load() Unexpected state type");
        return false;
    }

    const juce::String source = getClassName() + "::load()";
    bool result = true, hasNamed = false, hasUnnamed = false;
    const size_t count = importer.getNumVariables();
    for (size_t i = 0; i < count; ++i)
    {
        ObjectImporter::Scope scope (importer, i);
        const juce::String name = importer.getStack()[importer.getStack().size() - 2]->getVariableName (i);
        if (name.isNotEmpty())
        {
            hasNamed = true;
            result = loadVariable (importer, name) && result;
        }
        else
        {
            hasUnnamed = true;
            if (i >= getNumVariables())
            {
                importer.sendError (source, "Too many unnamed variables");
                return false;
            }
            result = importer.load (*getVariable (i)) && result;
        }
    }

    if (hasNamed && hasUnnamed)
    {
        importer.sendError (source, "Mixing named and unnamed variables");
        return false;
    }
    return result;
}

bool Object::loadVariable (ObjectImporter& importer, juce::StringRef name)
{
    if (auto* variable = getVariableByName (name))
        return importer.load (*variable);
    importer.sendUnknownVariableWarning (getClassName(), name);
    return true;
}

// Loads follow one another on a thread (one per undone number): each takes the list of marks
// that the last one left, emptied, and allocates none. A load inside a load finds none left
// and makes its own. Read with the initial-exec model (through the thread pointer, 24 bytes of
// static TLS) rather than through the loader twice per load.
[[gnu::tls_model ("initial-exec")]] static thread_local std::vector<Object*> spareMarks;

bool Object::loadFromState (ExecutionContext& context, const std::shared_ptr<State>& state)
{
    ObjectImporter importer (context, state);
    // Room for the usual chain (the object, its owners across embedding).
    std::vector<Object*> marked;
    marked.swap (spareMarks);
    marked.reserve (4);
    startApplyingVariableConstraintsOnParents (marked);
    const bool result = importer.load (*this);
    finishApplyingVariableConstraintsOnParents (marked);
    marked.clear();
    spareMarks.swap (marked);
    return result;
}

std::shared_ptr<State> Object::makeState (bool withoutDefaults, bool writeClass) const
{
    return StateObjectExporter::make (*this, withoutDefaults ? (uint32_t) exportWithoutDefaults : 0u, writeClass);
}

Object* Object::createFromState (ExecutionContext& context, const std::shared_ptr<State>& state, Object* parent)
{
    juce::String reason;
    Class* objectClass = state->getCompatibilityClass (&reason);
    if (objectClass == nullptr)
    {
        context.error (reason);
        return nullptr;
    }
    Object* object = objectClass->createObject (parent);
    if (object != nullptr)
    {
        ObjectImporter importer (context, state);
        importer.load (*object);
    }
    return object;
}

bool Object::loadFromFile (ExecutionContext& context, const juce::File& file)
{
    auto state = State::createFromStateFile (context, file);
    return state != nullptr && loadFromState (context, state);
}

bool Object::saveToFile (ExecutionContext& context, const juce::File& file, bool writeClass) const
{
    // Written out at once: the buffers' bytes need no copies.
    return StateObjectExporter::make (*this, exportWithoutDefaults | exportBufferViews, writeClass)->saveToFile (context, file, {});
}

//==============================================================================
// Variables equal to their default are left out only when embedded, as in StateObjectExporter.
static bool isPrunedFromJson (const Object& variable, const MemberSignature& signature, uint32_t flags)
{
    if ((flags & exportWithoutDefaults) == 0 || signature.getBooleanAttribute ("disableJsonPruning"))
        return false;
    const Object* defaultValue = variable.getDefaultValue();
    return defaultValue != nullptr && variable.equals (*defaultValue);
}

juce::var Object::saveToJson (uint32_t flags) const
{
    const size_t count = getNumVariables();
    if (count == 0)
        return {};
    auto* json = new juce::DynamicObject();
    juce::var result (json);
    for (size_t i = 0; i < count; ++i)
    {
        auto* signature = dynamic_cast<const VariableSignature*> (getVariableSignature (i));
        const Object* variable = getVariable (i);
        if (signature == nullptr || variable == nullptr || ! signature->canBeSaved ((flags & exportTransientVariables) != 0))
            continue;
        if (isPrunedFromJson (*variable, *signature, flags))
            continue;
        auto value = variable->saveToJson (flags);
        if (! value.isVoid())
            json->setProperty (getJsonIdentifier (*signature), value);
    }
    return result;
}

bool Object::loadFromJson (ExecutionContext& context, const juce::var& value)
{
    if (getNumVariables() == 0)
        return false;
    auto* json = value.getDynamicObject();
    if (json == nullptr)
        return ! (bool) value;
    juce::String error;
    if (loadObjectFromJsonProperties (json->getProperties(), *this, false, &error))
        return true;
    context.error ("Could not load " + getFriendlyName() + ": " + error);
    return false;
}

bool Object::loadVariableFromJson (ExecutionContext&, juce::StringRef name, const juce::var& value, juce::String* error)
{
    if (name == juce::StringRef ("custom_fields"))
    {
        auto* fields = value.getDynamicObject();
        return fields == nullptr || loadObjectFromJsonProperties (fields->getProperties(), *this, false, error);
    }
    const int index = findVariableByJsonIdentifier (getClass(), name);
    if (index < 0)
        return true;
    // JSON's null parses to a void var, whose text is empty: both leave the variable as it is.
    if (value.isVoid() || juceVarToString (value) == "null")
        return true;
    Object* variable = getVariable ((size_t) index);
    return variable == nullptr || loadObjectFromJson (value, *variable, false, error);
}

uint64_t Object::computeHash() const
{
    ComputeHashObjectExporter exporter (exportOwnedPointersAsIdentifiers | exportTransientVariables);
    exporter.save (*this, false);
    return exporter.get();
}

} // namespace tov
