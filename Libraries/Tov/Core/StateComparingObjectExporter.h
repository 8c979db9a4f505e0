#pragma once

#include "ObjectExporter.h"
#include <vector>

namespace tov
{

/** Tells whether an object would write exactly a given State, building nothing.

    It follows the calls an object makes as StateObjectExporter does, and compares each field
    with the node it would have made: so a snapshot taken earlier can stand for a new one as
    long as the object has not changed, at the price of a walk instead of a tree of nodes.

    It is strict rather than complete: an object that writes a node twice, writes buffers, or is
    exported without defaults never matches, and the caller then makes the State anew.
*/
class StateComparingObjectExporter final : public ObjectExporter
{
public:
    /** True when StateObjectExporter::make (object, flags, writeClass) would give a State equal
        to expected (State::equals). */
    static bool matches (const Object& object, const State& expected, uint32_t flags, bool writeClass);

    void save (const Object& object, bool writeClass) override;
    void setClass (Class* objectClass) override;
    void setVersionNumber (uint64_t version) override;
    void enterVariable (const juce::String& name) override;
    void leaveVariable() override;
    void reserveVariables (uint64_t count) override;
    void writeBoolean (bool value) override;
    void writeInteger (int64_t value) override;
    void writeReal (double value) override;
    void writeString (const juce::String& value) override;
    void writeClass (const Class* value) override;
    void writeOwnedPointer (const Object* object, Class* declaredClass) override;
    void writeUniqueIdentifier (const UniqueIdentifier& value) override;
    void writeNativePointer (const Object* object) override;
    void writeState (const std::shared_ptr<State>& state) override;
    void writeBuffer (uint64_t size, void* data, bool copy) override;

    /** Objects written as identifiers are compared in one pass over the list, without calls per
        element: a document's context is mostly one long list, compared edit after edit. */
    void saveOwnedObjects (const std::vector<Object*>& objects, Class* declaredClass) override;

private:
    /** A node being compared: what it is expected to be, and what has been written to it. */
    struct Level
    {
        const State* expected;
        StateType written = StateType::voidType;
        size_t numVariables = 0;
        bool hasIdentifier = false, hasClass = false, hasVersion = false;
    };

    std::vector<Level> stack;
    bool same = true;

    StateComparingObjectExporter (const State& expected, uint32_t flags);

    Level& current()                                 { return stack.back(); }
    /** False once a difference is found; the walk then goes on without comparing. */
    bool isComparing() const noexcept                { return same; }
    void check (bool condition) noexcept             { same = same && condition; }
    /** Starts a value of that type on the current node: only a node with nothing written yet
        takes one, and the expected node must be of that type. Null when they differ. */
    const State* startValue (StateType type);
    /** What was not written must not be there. */
    void finish (const Level& level);
    void push (const State* expected);
    void pop();
};

} // namespace tov
