#pragma once

#include "Transaction.h"
#include "../../Pointer/ObjectWeakPointer.h"
#include <memory>

namespace tov
{

class ChildTransactionsScope;
class MirroringMessage;
class ObjectSpaceProvider;
class Peer;

/** A transaction on one object, which it finds by address: the address survives the object's
    deletion and re-creation, so undo and redo find the object again after either.

    The states it keeps are State snapshots; nothing of it is declared to reflection or saved.
*/
class MirroredTransaction : public Transaction
{
public:
    TOV_DECLARE_CLASS (MirroredTransaction, Transaction)

    const ObjectWeakPointer& getPointer() const noexcept  { return pointer; }
    ObjectWeakPointer& getPointer() noexcept         { return pointer; }

protected:
    MirroredTransaction()                            { pointer.setParent (this); }
    /** Points at the object through its address. */
    explicit MirroredTransaction (Object& object);

    /** Sets this transaction as the message's parent, loads the message here at once, and adds
        it to the envelop, so that the receiver gets the same load afterwards. */
    void applyAndAddMessage (MirroringMessage* message, Envelop& envelop) const;
    /** The same for a message whose address is already resolved: to that object (null when
        there is none) in that space (null when the address names none). scope is
        ChildTransactionsScope::findFor (*this). */
    void applyAndAddMessage (MirroringMessage* message, Envelop& envelop, Object* object, ObjectSpace* space,
                             ChildTransactionsScope* scope) const;

    /** The space that the address (the message's) names, found from the provider that a climb
        from the message finds, the message being a child of this transaction. */
    ObjectSpace* findSpace (const MirroringMessage& message, const VariableAddress& address, ChildTransactionsScope* scope) const;
    /** Peer::get of this transaction. */
    Peer* findPeer (ChildTransactionsScope* scope) const;

    /** "<verb> " + class expression of the state (or "<noclass>") + " " + its short text. */
    static juce::String describeState (const juce::String& verb, const State& state);

    ObjectWeakPointer pointer;

private:
    /** The peer of this transaction, when the envelop has a sender: messages load here only then. */
    Peer* getPeerToApplyTo (const Envelop& envelop, ChildTransactionsScope* scope) const;
};

} // namespace tov
