#pragma once

#include "Transaction.h"
#include "../../Container/OwnedVector.h"

namespace tov
{

/** A transaction made of others: performed and redone first to last, undone last to first. */
class CompositeTransaction : public Transaction
{
public:
    TOV_DECLARE_CLASS (CompositeTransaction, Transaction)

    CompositeTransaction() = default;
    explicit CompositeTransaction (const juce::String& description) : Transaction (description) {}

    /** Appends the transaction and takes ownership of it. */
    void addTransaction (Transaction* transaction)   { transactions.append (transaction, false); }
    const OwnedVector<Transaction>& getTransactions() const noexcept  { return transactions; }
    OwnedVector<Transaction>& getTransactions() noexcept  { return transactions; }

    void perform (Envelop& envelop) override;
    void undo (Envelop& envelop) override;
    void redo (Envelop& envelop) override;

    /** The name, or "Composite Transaction" without one. */
    juce::String toString() const override;

private:
    OwnedVector<Transaction> transactions;

    void reserveMessages (Envelop& envelop) const;
};

} // namespace tov
