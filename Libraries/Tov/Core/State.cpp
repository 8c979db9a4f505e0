#include "State.h"
#include "ClassExpression.h"
#include "Class.h"
#include "ClassRegistry.h"
#include "ClassExpressionTranslation.h"
#include "StateCloner.h"
#include "StateValueText.h"
#include <lz4.h>
#include <limits>

namespace tov
{

const char* const State::classToken = "'";
const char* const State::openScope = "{";
const char* const State::closeScope = "}";
const char* const State::assignmentToken = "=";
const char* const State::weakPointerToken = "->";
const char* const State::ownedPointerToken = "=>";

//==============================================================================
State::State (const State& other)                    { other.copyTo (*this); }
State::State (bool value)                            { setBoolean (value); }
State::State (long long value)                       { setInteger ((int64_t) value); }
State::State (double value)                          { setReal (value); }
State::State (const juce::String& value)             { setString (value); }
State::State (const char* value)                     { setString (juce::String::fromUTF8 (value)); }
State::State (UniqueIdentifier weakPointerTarget)    { setUniqueIdentifierValue (weakPointerTarget); }
State::State (const ClassExpression* classValue)     { setClassExpressionValue (classValue); }
State::State (const Object* nativePointer)           { setNativePointer (nativePointer); }
State::State (uint64_t size, void* data, bool copy)  { setBuffer (size, data, copy); }

State::State (const void* compressedData, uint64_t compressedSize, uint64_t uncompressedSize)
{
    RawBuffer decompressed;
    decompressed.allocateData (uncompressedSize);
    LZ4_decompress_safe (static_cast<const char*> (compressedData), static_cast<char*> (decompressed.getData()),
                         (int) (uint32_t) compressedSize, (int) (uint32_t) uncompressedSize);
    setBuffer (decompressed);
}

State::~State()
{
    clearValue();
}

juce::String State::typeToString (StateType type)
{
    static const char* const words[] = { "void", "boolean", "integer", "real", "string", "weakPointer",
                                         "ownedPointer", "variables", "classExpression", "nativePointer", "buffer" };
    const auto index = (size_t) type;
    return index < std::size (words) ? words[index] : "unknown";
}

//==============================================================================
void State::setType (StateType newType)
{
    if (type == newType)
        return;

    if (type == StateType::voidType)
        classOfValue.store (nullptr, std::memory_order_relaxed); // nothing else to clear: the common case of a new node
    else
        clearValue();
    type = newType;
    switch (newType)
    {
        case StateType::stringType:       new (payload.string) juce::String(); break;
        case StateType::ownedPointerType: payload.ownedPointer = new std::shared_ptr<State>(); break;
        case StateType::variablesType:    payload.variables = new Variables(); break;
        case StateType::bufferType:       payload.buffer = new RawBuffer(); break;
        default:                          payload.word = 0; break;
    }
}

void State::clearValue()
{
    switch (type)
    {
        case StateType::stringType:       getStringPayload().~String(); break;
        case StateType::ownedPointerType: delete payload.ownedPointer; break;
        case StateType::variablesType:    delete payload.variables; break;
        case StateType::bufferType:       delete payload.buffer; break;
        default:                          break;
    }
    payload.word = 0;
    type = StateType::voidType;
    classOfValue.store (nullptr, std::memory_order_relaxed);
}

void State::setBoolean (bool value)                          { setType (StateType::booleanType); payload.word = value ? 1 : 0; }
void State::setInteger (int64_t value)                       { setType (StateType::integerType); payload.integer = value; }
void State::setReal (double value)                           { setType (StateType::realType); payload.real = value; }
void State::setString (const juce::String& value)            { setType (StateType::stringType); getStringPayload() = value; }
void State::setString (juce::String&& value)                 { setType (StateType::stringType); getStringPayload() = std::move (value); }
void State::setUniqueIdentifierValue (UniqueIdentifier value) { setType (StateType::weakPointerType); payload.word = value.getInt64(); }
void State::setOwnedPointer (const std::shared_ptr<State>& target) { setType (StateType::ownedPointerType); *payload.ownedPointer = target; }
void State::setNativePointer (const Object* object)          { setType (StateType::nativePointerType); payload.nativePointer = object; }
void State::setBuffer (const RawBuffer& buffer)              { setType (StateType::bufferType); *payload.buffer = buffer; }
void State::setBuffer (uint64_t size, void* data, bool copy) { setType (StateType::bufferType); payload.buffer->setData (size, data, copy); }

void State::setClassExpressionValue (const ClassExpression* expression)
{
    setType (StateType::classExpressionType);
    payload.classExpression = expression;
    classOfValue.store (nullptr, std::memory_order_relaxed);
}

void State::setClassValue (const Class* valueClass)
{
    setClassExpressionValue (valueClass->getExpression());
}

void State::setClassExpression (const ClassExpression* expression) noexcept
{
    classExpression = expression;
    classOfNode.store (nullptr, std::memory_order_relaxed);
    compatibilityClassOfNode.store (nullptr, std::memory_order_relaxed);
}

void State::setAtomicClassExpression (const juce::String& className)
{
    setClassExpression (createAtomicClassExpression (className));
}

void State::setClass (Class* nodeClass)
{
    setClassExpression (nodeClass != nullptr ? nodeClass->getExpression() : nullptr);
    classOfNode.store (nodeClass, std::memory_order_relaxed);
}

//==============================================================================
size_t State::getNumVariables() const noexcept
{
    return type == StateType::variablesType ? payload.variables->size() : 0;
}

int State::findVariable (juce::StringRef name) const
{
    if (type != StateType::variablesType)
        return -1;
    const auto& variables = *payload.variables;
    for (size_t i = 0; i < variables.size(); ++i)
        if (variables[i].first == name)
            return (int) i;
    return -1;
}

std::shared_ptr<State> State::getVariableStateByName (juce::StringRef name) const
{
    const int index = findVariable (name);
    return index >= 0 ? getVariableState ((size_t) index) : nullptr;
}

const State* State::getVariableStateByNameRef (juce::StringRef name) const
{
    const int index = findVariable (name);
    return index >= 0 ? getVariableState ((size_t) index).get() : nullptr;
}

State* State::getVariableStateByNameRef (juce::StringRef name)
{
    const int index = findVariable (name);
    return index >= 0 ? getVariableState ((size_t) index).get() : nullptr;
}

void State::addVariable (const juce::String& name, const std::shared_ptr<State>& state, bool atFront)
{
    setType (StateType::variablesType);
    auto& variables = *payload.variables;
    // An object's node gets its variables one by one: room for a few at once spares the
    // vector's growth through one, two and four.
    if (variables.capacity() == 0)
        variables.reserve (4);
    if (atFront)
        variables.emplace (variables.begin(), name, state);
    else
        variables.emplace_back (name, state);
}

void State::reserveVariables (size_t count)
{
    setType (StateType::variablesType);
    payload.variables->reserve (count);
}

std::shared_ptr<State> State::removeVariable (juce::StringRef name)
{
    const int index = findVariable (name);
    if (index < 0)
        return nullptr;
    auto removed = getVariableState ((size_t) index);
    removeVariable ((size_t) index);
    return removed;
}

void State::removeVariable (size_t index)
{
    payload.variables->erase (payload.variables->begin() + (std::ptrdiff_t) index);
}

void State::removeEmptyVariables()
{
    if (type != StateType::variablesType)
        return;
    auto& variables = *payload.variables;
    variables.erase (std::remove_if (variables.begin(), variables.end(),
                                     [] (const Variable& v) { return v.second != nullptr && v.second->getType() == StateType::voidType; }),
                     variables.end());
    if (variables.empty())
        clearValue();
}

//==============================================================================
Class* State::getClass (juce::String* error) const
{
    if (error != nullptr)
        error->clear();
    if (classExpression == nullptr)
    {
        if (error != nullptr)
            *error = "no class expression";
        return nullptr;
    }
    if (auto* cached = classOfNode.load (std::memory_order_acquire))
        return cached;
    auto* registry = ClassRegistry::getInstanceIfExists();
    if (registry == nullptr)
        return nullptr;
    auto* resolved = registry->resolve (classExpression, error);
    if (resolved != nullptr)
        classOfNode.store (resolved, std::memory_order_release);
    return resolved;
}

Class* State::getClassValue (bool compatibility) const
{
    if (type != StateType::classExpressionType || payload.classExpression == nullptr)
        return nullptr;
    auto* registry = ClassRegistry::getInstanceIfExists();
    if (registry == nullptr)
        return nullptr;
    juce::String discarded;
    if (! compatibility)
        return registry->resolve (payload.classExpression, &discarded);
    if (auto* cached = classOfValue.load (std::memory_order_acquire))
        return cached;
    auto* resolved = registry->resolve (translateClassExpression (payload.classExpression, nullptr), &discarded);
    if (resolved != nullptr)
        classOfValue.store (resolved, std::memory_order_release);
    return resolved;
}

const ClassExpression* State::getCompatibilityClassExpression (const State& state)
{
    if (state.classExpression == nullptr)
        return nullptr;
    // The one rule that writes adds a variable to a node that is being read in: see translateClassExpression.
    return translateClassExpression (state.classExpression, const_cast<State*> (&state));
}

Class* State::getCompatibilityClass (juce::String* error) const
{
    if (error != nullptr)
        error->clear();
    if (auto* cached = compatibilityClassOfNode.load (std::memory_order_acquire))
        return cached;
    auto* expression = getCompatibilityClassExpression (*this);
    if (expression == nullptr)
    {
        if (error != nullptr)
            *error = "no class expression";
        return nullptr;
    }
    auto* registry = ClassRegistry::getInstanceIfExists();
    if (registry == nullptr)
        return nullptr;
    auto* resolved = registry->resolve (expression, error);
    if (resolved != nullptr)
        compatibilityClassOfNode.store (resolved, std::memory_order_release);
    return resolved;
}

std::vector<Class*> State::getClassVector() const
{
    std::vector<Class*> classes;
    if (type == StateType::classExpressionType)
    {
        if (auto* c = getClassValue (true))
            classes.push_back (c);
    }
    else if (type == StateType::variablesType)
    {
        for (auto& variable : *payload.variables)
            if (variable.second->getType() == StateType::classExpressionType)
                if (auto* c = variable.second->getClassValue (true))
                    classes.push_back (c);
    }
    return classes;
}

bool State::checkType (StateType expected, juce::String& error) const
{
    if (type == expected)
        return true;
    error = "Wrong type: expected " + typeToString (expected) + ", found " + typeToString (type)
          + " (in " + toShortString (2) + ")";
    return false;
}

//==============================================================================
// The value is copied before the target is cleared, since the target may be
// what keeps this node alive (as when a node is assigned one of its children).
void State::copyTo (State& target) const
{
    if (&target == this)
        return;

    const auto copiedType = type;
    const auto copiedPayload = copyPayload();
    const auto copiedSource = source;
    target.classExpression = classExpression;
    target.uniqueIdentifier = uniqueIdentifier;
    target.versionNumber = versionNumber;

    target.clearValue();
    target.type = copiedType;
    target.payload = copiedPayload;
    target.source = copiedSource;
}

// A separately allocated copy of the payload; a list shares its variables' states.
State::Payload State::copyPayload() const
{
    Payload copy { payload.word };
    switch (type)
    {
        case StateType::stringType:       new (copy.string) juce::String (getString()); break;
        case StateType::ownedPointerType: copy.ownedPointer = new std::shared_ptr<State> (*payload.ownedPointer); break;
        case StateType::variablesType:    copy.variables = new Variables (*payload.variables); break;
        case StateType::bufferType:       copy.buffer = new RawBuffer (*payload.buffer); break;
        default:                          break;
    }
    return copy;
}

bool State::equals (const std::shared_ptr<State>& a, const std::shared_ptr<State>& b)
{
    if (a == nullptr || b == nullptr)
        return a == b;
    return a->equals (*b);
}

bool State::equals (const State& other) const
{
    if (this == &other)
        return true;
    if (uniqueIdentifier != other.uniqueIdentifier || versionNumber != other.versionNumber
        || type != other.type || ! ClassExpression::equals (classExpression, other.classExpression))
        return false;

    switch (type)
    {
        case StateType::stringType:       return getString() == other.getString();
        case StateType::ownedPointerType: return equals (*payload.ownedPointer, *other.payload.ownedPointer);
        case StateType::bufferType:       return *payload.buffer == *other.payload.buffer;
        case StateType::variablesType:
        {
            const auto& mine = *payload.variables;
            const auto& theirs = *other.payload.variables;
            if (mine.size() != theirs.size())
                return false;
            for (size_t i = 0; i < mine.size(); ++i)
                if (mine[i].first != theirs[i].first || ! equals (mine[i].second, theirs[i].second))
                    return false;
            return true;
        }
        default: return payload.word == other.payload.word;
    }
}

//==============================================================================
void State::hash (StateHasher& hasher, const State* excluded) const
{
    if (this == excluded)
        return;

    hasher.pushPointer (classExpression);
    switch (type)
    {
        case StateType::voidType:            hasher.pushVoid(); break;
        case StateType::booleanType:         hasher.pushBoolean (getBoolean()); break;
        case StateType::integerType:         hasher.pushInteger (payload.integer); break;
        case StateType::realType:            hasher.pushReal (payload.real); break;
        case StateType::stringType:          hasher.pushString (getString()); break;
        case StateType::weakPointerType:     hasher.pushUniqueIdentifier (getUniqueIdentifierValue()); break;
        case StateType::classExpressionType: hasher.pushPointer (payload.classExpression); break;
        case StateType::nativePointerType:   hasher.pushPointer (payload.nativePointer); break;
        case StateType::bufferType:          break;
        case StateType::ownedPointerType:
        {
            // Only the target's identity: hashing its content would walk every
            // owned object again when its owner is hashed.
            const auto& target = *payload.ownedPointer;
            hasher.pushUniqueIdentifier (target != nullptr ? target->getUniqueIdentifier() : UniqueIdentifier());
            break;
        }
        case StateType::variablesType:
            for (auto& variable : *payload.variables)
            {
                if (variable.second.get() == excluded)
                    continue;
                hasher.pushString (variable.first);
                if (variable.second != nullptr)
                    variable.second->hash (hasher, nullptr);
            }
            break;
    }
}

uint64_t State::computeHash (const State* excluded) const
{
    StateHasher hasher;
    hash (hasher, excluded);
    return hasher.get();
}

std::shared_ptr<State> State::clone (UniqueIdentifier mask) const
{
    return StateCloner (mask).clone (*this);
}

void State::clearUniqueIdentifiers()
{
    uniqueIdentifier = UniqueIdentifier();
    if (type == StateType::ownedPointerType && *payload.ownedPointer != nullptr)
        (*payload.ownedPointer)->clearUniqueIdentifiers();
    for (size_t i = 0; i < getNumVariables(); ++i)
        if (auto& variable = getVariableState (i))
            variable->clearUniqueIdentifiers();
}

//==============================================================================
static juce::String realToShortString (double value)
{
    std::string text;
    appendRealText (value, text);
    return juce::String::fromUTF8 (text.data(), (int) text.size());
}

// Well-formed text is escaped byte by byte; JUCE's replacing, which goes
// character by character, is kept for the rest.
static juce::String quoteString (const juce::String& text)
{
    std::string quoted;
    if (appendQuotedText (text, quoted))
        return juce::String::fromUTF8 (quoted.data(), (int) quoted.size());
    return "\"" + text.replace ("\\", "\\\\").replace ("\"", "\\\"") + "\"";
}

juce::String State::toShortString (uint64_t maxDepth) const
{
    switch (type)
    {
        case StateType::voidType:            return "void";
        case StateType::booleanType:         return getBoolean() ? "true" : "false";
        case StateType::integerType:         return juce::String ((juce::int64) payload.integer);
        case StateType::realType:            return realToShortString (payload.real);
        case StateType::stringType:          return quoteString (getString());
        case StateType::weakPointerType:     return juce::String (weakPointerToken) + " " + getUniqueIdentifierValue().to64BitsHexadecimalString();
        case StateType::classExpressionType: return payload.classExpression != nullptr ? payload.classExpression->toString() : "<noclass>";
        case StateType::nativePointerType:   return "0x" + juce::String::toHexString ((juce::pointer_sized_uint) payload.nativePointer);
        case StateType::bufferType:          return {};
        case StateType::ownedPointerType:
        {
            if (maxDepth == 0)
                return juce::String (ownedPointerToken) + " ...";
            const auto& target = *payload.ownedPointer;
            return juce::String (ownedPointerToken) + " " + (target != nullptr ? target->toShortString (maxDepth - 1) : "<null>");
        }
        case StateType::variablesType:
        {
            if (maxDepth == 0)
                return "{...}";
            juce::StringArray parts;
            for (auto& variable : *payload.variables)
                parts.add ((variable.first.isEmpty() ? juce::String() : variable.first + " = ")
                           + variable.second->toShortString (maxDepth - 1));
            return "{" + parts.joinIntoString (", ") + "}";
        }
    }
    return {};
}

} // namespace tov
