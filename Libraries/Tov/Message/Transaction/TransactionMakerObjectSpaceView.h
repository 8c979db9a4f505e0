#pragma once

#include "TransactionBuilderImplementation.h"
#include "../../Core/StateComparingObjectExporter.h"
#include <juce_core/juce_core.h>
#include <memory>
#include <vector>

namespace tov
{

class CompositeTransaction;
class CreateTransactionBuilderImplementation;
class History;
class MessageTarget;
class State;
class VolatileTransactionBuilderImplementation;

/** The space's view that turns scopes of edits into transactions.

    It keeps a stack of builders, one per open scope, and hands each creation, change and
    destruction to the builder on top. A null entry marks a bypass: inside one, new builders are
    inert (they work when called, but hear nothing and are never finished) and nothing is
    recorded. When the outermost normal scope closes, its composite is performed into an envelop
    posted to the receiver target, in the name of the sender target, and joins the history.
*/
class TransactionMakerObjectSpaceView : public ObjectSpaceView
{
public:
    TransactionMakerObjectSpaceView (ObjectSpace& space, MessageTarget& receiver, MessageTarget& sender);
    /** Deletes the builders still open. */
    ~TransactionMakerObjectSpaceView() override;

    void objectCreated (Object* object) override;
    void objectChanged (Object* object) override;
    void objectDestroyed (Object* object) override;
    void objectPreDeleted (Object* object) override;

    TransactionBuilderImplementation* startTransaction (const juce::String& description, const Object& context);
    TransactionBuilderImplementation* startVolatileTransaction();
    void startBypassTransaction();
    /** Finishes the builder on top of the stack, whichever it is. */
    void leave();

    /** Some entry of the stack is volatile. */
    bool isInsideVolatileTransaction() const;
    /** The stack is not empty and no entry is volatile; a bypass alone counts. */
    bool isInsideNonVolatileTransaction() const;
    /** The first normal builder from the bottom stores the object; else nobody does. */
    void storeValueForTransaction (const Object& object, bool deep, bool climb);

    /** A snapshot of a scope's context, written with those flags: the one made last time when the
        object still writes exactly that state. Scopes tend to open on the same context edit after
        edit, and a document's snapshot lists everything it holds. Only for snapshots that nobody
        changes afterwards. */
    std::shared_ptr<State> makeContextSnapshot (const Object& context, uint32_t flags);

    const std::vector<TransactionBuilderImplementation*>& getTransactionBuilders() const noexcept  { return transactionBuilders; }
    MessageTarget& getReceiverMessageTarget() const noexcept  { return *receiverMessageTarget; }
    MessageTarget& getSenderMessageTarget() const noexcept    { return *senderMessageTarget; }

private:
    std::vector<TransactionBuilderImplementation*> transactionBuilders;
    MessageTarget* receiverMessageTarget;
    MessageTarget* senderMessageTarget;
    /** Builders made inside a bypass, kept until the stack is empty again. */
    std::vector<std::unique_ptr<TransactionBuilderImplementation>> inertBuilders;
    std::shared_ptr<State> contextSnapshot;
    uint32_t contextSnapshotFlags = 0;
    /** The identifiers of the snapshot's lists, for the next comparison with it. */
    StateComparingObjectExporter::IdentifiersMemo contextSnapshotIdentifiers;

    TransactionBuilderImplementation* getTop() const;
    VolatileTransactionBuilderImplementation* findFirstVolatileBuilder() const;
    bool isInsideBypass() const;
    void flushTop();
    TransactionBuilderImplementation* push (TransactionBuilderImplementation* builder);
    void finish (CreateTransactionBuilderImplementation& builder);
    void finish (VolatileTransactionBuilderImplementation& builder);
    void performOutermost (CompositeTransaction& composite, History* history);
    void reportBadStack (TransactionBuilderImplementation* top) const;
};

} // namespace tov
