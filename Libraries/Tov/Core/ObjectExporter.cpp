#include "ObjectExporter.h"
#include "Object.h"

namespace tov
{

void ObjectExporter::saveVariable (const VariableSignature& signature, const Object& variable)
{
    if (signature.canBeSaved (hasFlag (exportTransientVariables)))
        saveVariable (signature.getName(), variable);
}

void ObjectExporter::saveVariable (const juce::String& name, bool value)                        { Scope scope (*this, name); writeBoolean (value); }
void ObjectExporter::saveVariable (const juce::String& name, int64_t value)                     { Scope scope (*this, name); writeInteger (value); }
void ObjectExporter::saveVariable (const juce::String& name, double value)                      { Scope scope (*this, name); writeReal (value); }
void ObjectExporter::saveVariable (const juce::String& name, const juce::String& value)         { Scope scope (*this, name); writeString (value); }
void ObjectExporter::saveVariable (const juce::String& name, const char* value)                 { Scope scope (*this, name); writeString (value); }
void ObjectExporter::saveVariable (const juce::String& name, const UniqueIdentifier& value)     { Scope scope (*this, name); writeUniqueIdentifier (value); }
void ObjectExporter::saveVariable (const juce::String& name, const std::shared_ptr<State>& value) { Scope scope (*this, name); writeState (value); }
void ObjectExporter::saveVariable (const juce::String& name, uint64_t size, void* data, bool copy) { Scope scope (*this, name); writeBuffer (size, data, copy); }
void ObjectExporter::saveVariable (const juce::String& name, const Object* pointedObject, Class* declaredClass) { Scope scope (*this, name); writeOwnedPointer (pointedObject, declaredClass); }
void ObjectExporter::saveVariable (const juce::String& name, const Object& object)              { Scope scope (*this, name); save (object, false); }

void ObjectExporter::saveOwnedObjects (const std::vector<Object*>& objects, Class* declaredClass)
{
    for (auto* object : objects)
        saveVariable (juce::String(), object, declaredClass);
}

} // namespace tov
