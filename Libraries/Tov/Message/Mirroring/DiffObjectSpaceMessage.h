#pragma once

#include "../Message.h"
#include "../../Core/ObjectImporter.h"
#include "../../Core/VariableAddress.h"
#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

namespace tov
{

class ObjectSpace;

/** What changed in one object space over one mirroring period, applied to the space of the same
    name on the receiver, where objects keep the identifiers they have on the sender.

    Creations are the shallow states (owned pointers as identifiers) of objects that appeared;
    changes are shallow states at variable addresses. A deletion is not sent as such: it shows
    in the state of the container that held the object.

    The message is saved by hand:
        "targetSpace"  the space's name
        "creations"    when there are any: one unnamed owned pointer per new object, to its
                       state, which carries the identifier
        "changes"      when there are any: one unnamed compound per change, with exactly the
                       two variables "address" and "state" (an owned pointer)
*/
class DiffObjectSpaceMessage : public Message
{
public:
    TOV_DECLARE_CLASS (DiffObjectSpaceMessage, Message)

    using Creations = std::unordered_map<UniqueIdentifier, std::shared_ptr<State>, UniqueIdentifierHash>;
    using Changes = std::map<VariableAddress, std::shared_ptr<State>>;

    DiffObjectSpaceMessage() = default;
    explicit DiffObjectSpaceMessage (const juce::String& spaceName) : targetSpace (spaceName) {}
    ~DiffObjectSpaceMessage() override;

    const juce::String& getTargetSpace() const noexcept  { return targetSpace; }
    void setTargetSpace (const juce::String& name)       { targetSpace = name; }

    const Creations& getCreations() const noexcept        { return creations; }
    const Changes& getChanges() const noexcept            { return changes; }
    bool isEmpty() const noexcept                         { return creations.empty() && changes.empty(); }

    void setCreation (UniqueIdentifier identifier, const std::shared_ptr<State>& state);
    void eraseCreation (UniqueIdentifier identifier)      { creations.erase (identifier); }
    /** A change of a created object goes into its creation: the whole state for the object
        itself, else into the creation's state at the path. Anything else, or a path that the
        creation's state lacks, is a change of its own. */
    void addChange (const VariableAddress& address, const std::shared_ptr<State>& state);

    /** Takes the creations and then the changes of a later diff of the same space into this one. */
    virtual void merge (const DiffObjectSpaceMessage& other);

    /** On the receiver's service thread: creates and loads what the diff describes in the space
        of its name, which is looked up from the message. A diff for a space the receiver lacks
        is dropped without a word, and so are changes whose object never comes into being. */
    void process (ExecutionContext& context, const Object& senderIdentifier, MessageTarget& incomingTarget) const override;

    void save (ObjectExporter& exporter) const override;
    bool loadVariable (ObjectImporter& importer, juce::StringRef name) override;
    void copyTo (Object& target) const override;
    bool equalsSameClass (const Object& other) const override;
    /** "DiffObjectSpaceMessage: 2 creations, 5 changes", each part only when it has entries. */
    juce::String toString() const override;

private:
    /** Objects that process holds, so that an object taken out of its place by one change lives
        until the whole diff stands: moved to another container, or replaced for a moment. A
        node's children are descendants of its object; the root node holds nothing. */
    struct RetainedObject
    {
        Object* object = nullptr;
        std::vector<std::unique_ptr<RetainedObject>> children;

        ~RetainedObject();
        void retain (Object& descendant);
    };

    juce::String targetSpace;
    Creations creations;
    Changes changes;
    mutable RetainedObject retainedObjects;

    bool loadCreations (ObjectImporter& importer);
    bool loadChanges (ObjectImporter& importer);
    void mirrorRoot (ObjectImporter& importer, ObjectSpace& space, ObjectImporter::PendingStates& pending) const;
    void releaseRootIdentifier (ObjectSpace& space) const;
    /** One pass over the work: each change whose object exists is applied and erased. True when
        something was erased. */
    bool applyResolvableChanges (ObjectImporter& importer, ObjectSpace& space, Changes& work) const;
    void applyChange (ObjectImporter& importer, Object& object, const std::shared_ptr<State>& state) const;
    void retainChildren (Object& object) const;
};

} // namespace tov
