#pragma once

#include "State.h"
#include <vector>

namespace tov
{

class Object;
class ExecutionContext;

/** Reads objects back from a State tree: walks the tree while objects load themselves. */
class ObjectImporter
{
public:
    ObjectImporter (ExecutionContext& context, const std::shared_ptr<State>& root);
    virtual ~ObjectImporter() = default;

    /** Loads the current state into the object: identifier, class check, then the object's own load. */
    virtual bool load (Object& object);

    ExecutionContext& getContext() const noexcept                { return context; }

    void enter (const std::shared_ptr<State>& state)             { stack.push_back (state); }
    void leave()                                                 { stack.pop_back(); }
    const std::shared_ptr<State>& getCurrentState() const        { return stack.back(); }
    StateType getCurrentType() const                             { return stack.back()->getType(); }
    UniqueIdentifier getCurrentUniqueIdentifier() const          { return stack.back()->getUniqueIdentifier(); }
    const std::vector<std::shared_ptr<State>>& getStack() const  { return stack; }

    size_t getNumVariables() const                               { return stack.back()->getNumVariables(); }
    const juce::String& getVariableName (size_t index) const     { return stack.back()->getVariableName (index); }
    const std::shared_ptr<State>& getVariableState (size_t index) const { return stack.back()->getVariableState (index); }
    std::shared_ptr<State> getVariableStateByName (juce::StringRef name) const { return stack.back()->getVariableStateByName (name); }

    /** Reports State::checkType's words when the current state has another type. */
    bool checkType (StateType type);

    /** Message + " (in " + context + ")" as an error. */
    void sendError (const juce::String& sourceContext, const juce::String& message);
    void sendWarning (const juce::String& sourceContext, const juce::String& message);
    void sendUnknownVariableWarning (const juce::String& sourceContext, const juce::String& name);
    juce::String getSourceDescription (juce::StringRef fallback) const;

    /** Enters a variable, by name or by index, for the life of the scope. */
    class Scope
    {
    public:
        Scope (ObjectImporter& importer, juce::StringRef name);
        Scope (ObjectImporter& importer, size_t index);
        ~Scope();
        bool isOpen() const noexcept { return open; }

    private:
        ObjectImporter& importer;
        bool open = false;
    };

private:
    ExecutionContext& context;
    std::vector<std::shared_ptr<State>> stack;
};

} // namespace tov
