#pragma once

#include "Transaction.h"
#include "../../Atomic/PositiveInteger.h"
#include "../../Container/OwnedVector.h"
#include "../../Pointer/WeakPointer.h"
#include "../MessageTarget.h"

namespace tov
{

/** The list of performed transactions of a document, with undo and redo.

    position is the index of the last performed transaction. The first entry is the base of the
    history and can't be undone: the first transaction ever added becomes it, and clear puts a
    DummyTransaction there. Undo and redo apply the older or newer states here and post them to
    the receiver target, in the name of the sender target.

        state                   event            next
        empty                   addTransaction   size 1, position 0
        position p, at the end  addTransaction   position p+1
        position p, tail        addTransaction   tail deleted, position p+1
        p above 0               undo             p-1
        p below size-1          redo             p+1
        any                     clear (d)        size 1, position 0, a DummyTransaction

    undo and redo don't check that they can run: ask canUndo and canRedo first.
*/
class History : public Object
{
public:
    TOV_DECLARE_CLASS (History, Object)

    History();

    /** Appends the transaction, which the history then owns, cutting the redo tail first. */
    void addTransaction (Transaction* transaction);
    /** Deletes every transaction and starts again from a DummyTransaction of that description. */
    void clear (const juce::String& description);

    void undo();
    void redo();
    /** Undoes or redoes until the position is reached; a position past the end stops at the last transaction. */
    void moveToPosition (size_t newPosition);
    /** Moves to the transaction's position; nothing when it is not in the list. */
    void moveToTransaction (Transaction& transaction);

    bool canUndo() const                             { return getPosition() > 0; }
    bool canRedo() const                             { return transactions.size() > 0 && getPosition() < transactions.size() - 1; }
    /** The transaction is in the list at or before the position. */
    bool hasBeenPerformed (const Transaction& transaction) const;
    /** At position 0, unless the base entry is called "Clear history". */
    bool isInInitialPosition() const;

    size_t getNumTransactions() const noexcept       { return transactions.size(); }
    juce::String getTransactionDescription (size_t index) const  { return transactions[index]->toString(); }
    size_t getPosition() const                       { return (size_t) position.get(); }
    const OwnedVector<Transaction>& getTransactions() const noexcept  { return transactions; }
    OwnedVector<Transaction>& getTransactions() noexcept  { return transactions; }

    /** Where the envelopes of undo and redo go, and in whose name. */
    void setMessageTargets (MessageTarget& receiver, MessageTarget& sender);
    MessageTarget* getReceiverMessageTarget() const  { return receiverMessageTarget.get(); }
    MessageTarget* getSenderPeer() const             { return senderMessageTarget.get(); }

private:
    WeakPointer<MessageTarget> receiverMessageTarget;
    WeakPointer<MessageTarget> senderMessageTarget;
    OwnedVector<Transaction> transactions;
    PositiveInteger position;

    /** Undoes or redoes one transaction into an envelop of its own, posted at once. */
    template <class Step>
    void runAndPost (Transaction& transaction, Step&& step);
};

} // namespace tov
