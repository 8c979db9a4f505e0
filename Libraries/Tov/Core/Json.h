#pragma once

#include <juce_core/juce_core.h>
#include <cstdint>
#include <functional>

namespace tov
{

class Class;
class Container;
class ExecutionContext;
class Object;
class VariableSignature;

/** The JSON bridge: objects saved as juce::var values and JSON files for exchange with the
    outside world. Unlike State it carries no identifiers, no class names (except where a pointer
    or container holds an object of another class than it expects, see saveObjectToJsonWithClass)
    and no versions. Each variable stands under its JSON identifier: the signature's string
    attribute "jsonIdentifier", or its name. The boolean attribute "disableJsonPruning" keeps a
    variable equal to its default when saving without defaults. The key "custom_fields" is
    reserved: its properties load into the same object, as if they stood at its level.
*/

/** The object's saveToJson, with exportTransientVariables for the first flag and
    exportWithoutDefaults for the second. */
juce::var saveObjectToJson (const Object& object, bool transientVariables = false, bool withoutDefaults = false);

/** Multi-line JSON with 15 decimal places and CRLF line endings. */
bool saveObjectToJsonFile (const Object& object, const juce::File& file, bool transientVariables = false);

/** The object's loadFromJson with the calling thread's context. On failure error, when given,
    becomes "Cannot load " + friendly name + " from Json value " + the JSON text. The third
    argument is carried for callers and plays no part: loading always notifies. */
bool loadObjectFromJson (const juce::var& value, Object& object, bool unused = false, juce::String* error = nullptr);

/** The JSON text of the file; false for a file that does not open or parse. */
bool loadObjectFromJsonFile (const juce::File& file, Object& object);

/** Each property through loadVariableFromJson, going on past failures; the first failure
    appends " in property '" + name + "'" to error. */
bool loadObjectFromJsonProperties (const juce::NamedValueSet& properties, Object& object,
                                   bool unused = false, juce::String* error = nullptr);

/** A new object of the class loaded from the value; Object's class stands for the class that
    inferClassFromJson gives. Null for a null class or a failed load (which deletes the object). */
Object* createObjectFromJson (const juce::var& value, Class* objectClass, bool unused = false, juce::String* error = nullptr);

/** The class a value has by its type alone: Void, Integer (32-bit only), Boolean, Real, String,
    Object, ObjectOwnedVector; null for undefined, 64-bit integers, binary data and methods. */
Class* inferClassFromJson (const juce::var& value);

/** The first member variable of the class whose JSON identifier is the text, or -1. */
int findVariableByJsonIdentifier (Class* objectClass, const juce::String& identifier);

/** The signature's "jsonIdentifier" attribute, with its name as default. */
juce::String getJsonIdentifier (const VariableSignature& signature);

/** Elements joined by ", " for an array; an object's "name" property, else its JSON text;
    the var's own text otherwise. */
juce::String juceVarToString (const juce::var& value);

/** "null", "boolean", "double", "integer", "string", "array", "object", "undefined", "binary",
    "method", or "unsupported!!!". */
const char* juceVarTypeToString (const juce::var& value);

//==============================================================================
// Objects held by pointers and containers, whose class may differ from the expected one.

/** Void for null; the object's JSON when its class is the expected one; otherwise
    {"class": class name, "value": the object's JSON}. */
juce::var saveObjectToJsonWithClass (const Object* object, Class* expectedClass, uint32_t flags);

/** A new object for a value written by saveObjectToJsonWithClass: the class named by a
    {"class", "value"} wrapper when it inherits from the expected class, else the expected class,
    or, when that is Object or abstract, the inferred class if it inherits from the expected one.
    Null with error set when no class fits or the load fails. */
/** The class that createObjectFromJsonWithClass makes for the value, null when none fits;
    content is what loads into it (the "value" of a wrapper, else the value itself). */
Class* getJsonObjectClass (const juce::var& value, Class* expectedClass, juce::var& content);

Object* createObjectFromJsonWithClass (const juce::var& value, Class* expectedClass, Object* parent, juce::String* error);

/** How containers load an array: each element through loadElement, going on past failures,
    which are reported with the error text loadElement sets. Any other value empties the
    container when it converts to false, and fails otherwise. */
bool loadJsonArray (ExecutionContext& context, const juce::var& value, Container& container,
                    const std::function<bool (const juce::var& element, juce::String& error)>& loadElement);

} // namespace tov
