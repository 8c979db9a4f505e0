#pragma once

#include "State.h"

namespace tov
{

/** An ordered table of attribute names to States: the metadata of classes and member signatures. */
class AttributesHost
{
public:
    virtual ~AttributesHost() = default;

    void setAttribute (const juce::String& name, const std::shared_ptr<State>& state) { attributes[name] = state; }
    /** Takes over the state. */
    void setAttribute (const juce::String& name, State* state)                  { attributes[name] = std::shared_ptr<State> (state); }
    std::shared_ptr<State> getAttribute (juce::StringRef name) const;
    State* getAttributeRef (juce::StringRef name) const;
    bool hasAttribute (juce::StringRef name) const                               { return attributes.find (name) >= 0; }
    bool hasAttributeOfType (juce::StringRef name, StateType type) const;
    void removeAttribute (juce::StringRef name)                                  { attributes.remove (name); }
    void clearAttributes()                                                       { attributes.clear(); }
    void setAttributes (const StateMap& newAttributes)                           { attributes = newAttributes; }
    const StateMap& getAttributes() const noexcept                               { return attributes; }
    /** Each entry of the argument overwrites or adds; states are shared. */
    void appendAttributes (const StateMap& other)                                { attributes.append (other); }
    juce::StringArray getAttributeNamesByType (StateType type, const juce::String& prefix = {}) const;

    // Typed getters return the default unless the attribute has exactly the right type.
    bool getBooleanAttribute (juce::StringRef name, bool defaultValue = false) const;
    int64_t getIntegerAttribute (juce::StringRef name, int64_t defaultValue = 0) const;
    double getRealAttribute (juce::StringRef name, double defaultValue = 0.0) const;
    juce::String getStringAttribute (juce::StringRef name, const juce::String& defaultValue = {}) const;
    Class* getClassAttribute (juce::StringRef name, Class* defaultValue = nullptr) const;
    const RawBuffer* getBufferAttribute (juce::StringRef name) const;

protected:
    const State* findAttributeOfType (juce::StringRef name, StateType type) const;

private:
    StateMap attributes;
};

} // namespace tov
