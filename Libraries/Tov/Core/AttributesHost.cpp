#include "AttributesHost.h"

namespace tov
{

std::shared_ptr<State> AttributesHost::getAttribute (juce::StringRef name) const
{
    const int index = attributes.find (name);
    return index >= 0 ? attributes.getState ((size_t) index) : nullptr;
}

State* AttributesHost::getAttributeRef (juce::StringRef name) const
{
    const int index = attributes.find (name);
    return index >= 0 ? attributes.getStateRef ((size_t) index) : nullptr;
}

const State* AttributesHost::findAttributeOfType (juce::StringRef name, StateType type) const
{
    const State* state = getAttributeRef (name);
    return state != nullptr && state->getType() == type ? state : nullptr;
}

bool AttributesHost::hasAttributeOfType (juce::StringRef name, StateType type) const
{
    return findAttributeOfType (name, type) != nullptr;
}

juce::StringArray AttributesHost::getAttributeNamesByType (StateType type, const juce::String& prefix) const
{
    juce::StringArray names;
    for (auto& entry : attributes.getMap())
        if (entry.second != nullptr && entry.second->getType() == type
            && (prefix.isEmpty() || entry.first.startsWith (prefix)))
            names.add (entry.first);
    return names;
}

bool AttributesHost::getBooleanAttribute (juce::StringRef name, bool defaultValue) const
{
    auto* state = findAttributeOfType (name, StateType::booleanType);
    return state != nullptr ? state->getBoolean() : defaultValue;
}

int64_t AttributesHost::getIntegerAttribute (juce::StringRef name, int64_t defaultValue) const
{
    auto* state = findAttributeOfType (name, StateType::integerType);
    return state != nullptr ? state->getInteger() : defaultValue;
}

double AttributesHost::getRealAttribute (juce::StringRef name, double defaultValue) const
{
    auto* state = findAttributeOfType (name, StateType::realType);
    return state != nullptr ? state->getReal() : defaultValue;
}

juce::String AttributesHost::getStringAttribute (juce::StringRef name, const juce::String& defaultValue) const
{
    auto* state = findAttributeOfType (name, StateType::stringType);
    return state != nullptr ? state->getString() : defaultValue;
}

Class* AttributesHost::getClassAttribute (juce::StringRef name, Class* defaultValue) const
{
    auto* state = findAttributeOfType (name, StateType::classExpressionType);
    return state != nullptr ? state->getClassValue (true) : defaultValue;
}

const RawBuffer* AttributesHost::getBufferAttribute (juce::StringRef name) const
{
    auto* state = findAttributeOfType (name, StateType::bufferType);
    return state != nullptr ? &state->getBuffer() : nullptr;
}

} // namespace tov
