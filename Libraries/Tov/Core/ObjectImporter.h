#pragma once

#include "State.h"
#include <map>
#include <memory>
#include <vector>

namespace tov
{

class Class;
class Object;
class ExecutionContext;

/** Reads objects back from a State tree: walks the tree while objects load themselves.

    It decides which class is created, which existing object is reused, and
    how pointers and identifiers are resolved. Loading does not roll back:
    what was loaded stays, and false only says that something was reported.
*/
class ObjectImporter
{
public:
    using PendingStates = std::map<UniqueIdentifier, std::shared_ptr<State>>;

    /** pending, when given, holds states not yet made into objects, made on their first reference. */
    ObjectImporter (ExecutionContext& context, const std::shared_ptr<State>& root, PendingStates* pending = nullptr);
    virtual ~ObjectImporter() = default;

    /** Loads the current state into the object: identifier, class check, then the object's own load. */
    virtual bool load (Object& object);
    /** Makes the object that the current state describes, under parent. */
    virtual Object* createPointedObject (Object* parent, Class* expectedClass);

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

    bool readBoolean (bool& value);
    bool readInteger (int64_t& value);
    bool readReal (double& value);
    bool readString (juce::String& value);
    bool readUniqueIdentifier (UniqueIdentifier& value);
    /** The compatible class of a class value, null included. */
    Class* readClass();
    /** A void state gives a null pointer; otherwise the target of an owned pointer. */
    bool readState (std::shared_ptr<State>& value);
    /** Takes the bytes of a buffer (emptying an owning state's buffer) or decodes base64 text. */
    bool readBuffer (RawBuffer& out, bool& changed);
    bool readVariable (juce::StringRef name, Object& object);
    /** An owned object, a null weak pointer, or an object found by identifier. */
    bool readObject (Object* parent, Object*& out, Class* expectedClass);

    /** The object of that identifier in the parent's space, reset to its defaults, or a new one. */
    static Object* resetOrCreateObject (Object* parent, Class* objectClass, UniqueIdentifier identifier);
    /** The friendly names from the root down to the object, joined by " -> ". */
    static juce::String makeObjectFriendlyPath (const Object& object);

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
    // Room for the depth of most objects, so that a small one (a message) grows it not at all.
    static constexpr size_t typicalDepth = 8;
    std::vector<std::shared_ptr<State>> stack;
    PendingStates* pending;
    std::unique_ptr<std::map<UniqueIdentifier, Object*>> createdObjects;

    Object* findObject (Object* parent, UniqueIdentifier identifier);
    /** True, unless out holds parent: then it reports, makes out null and answers false. */
    bool refuseOwnerOfParent (Object* parent, Object*& out);
    bool loadWithConstraintsSuspended (Object& object);
    template <class Reader> bool readTyped (StateType type, Reader&& read);
    Object* createPendingObject (Object* parent, UniqueIdentifier identifier, Class* expectedClass);
};

} // namespace tov
