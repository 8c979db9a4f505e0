#pragma once

#include "ObjectExporter.h"
#include "UniqueIdentifier.h"
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
    /** The identifiers that the lists of one State hold, copied out of their nodes the first time
        the State matches: the next comparisons with that State read them packed together
        instead of one node per element. Kept beside a State that nobody changes (states are not
        changed once handed on), and cleared when the State is let go, since its nodes are known
        by their addresses. */
    class IdentifiersMemo
    {
    public:
        void clear() noexcept                        { lists.clear(); }

    private:
        friend class StateComparingObjectExporter;
        /** The identifiers of the variables of node from its variable first on. */
        struct List
        {
            const State* node;
            size_t first;
            std::vector<UniqueIdentifier> identifiers;
        };
        std::vector<List> lists;

        const List* find (const State* node, size_t first) const noexcept;
    };

    /** True when StateObjectExporter::make (object, flags, writeClass) would give a State equal
        to expected (State::equals). A memo, kept with expected from one call to the next, spares
        the comparisons after the first the reading of the lists' nodes. */
    static bool matches (const Object& object, const State& expected, uint32_t flags, bool writeClass,
                         IdentifiersMemo* memo = nullptr);

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
    IdentifiersMemo* memo = nullptr;

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
    void compareWithNodes (const std::vector<Object*>& objects, const State::Variable* first);
    void compareWithMemo (const std::vector<Object*>& objects, const std::vector<UniqueIdentifier>& identifiers);
};

} // namespace tov
