#include "CompositeTransaction.h"
#include "ChildTransactionsScope.h"
#include "../Envelop.h"

namespace tov
{

TOV_BEGIN_CLASS (CompositeTransaction)
    TOV_VARIABLE (transactions)
TOV_END_CLASS()

// Most children add one message; nested composites leave the room to the outermost one.
void CompositeTransaction::reserveMessages (Envelop& envelop) const
{
    if (envelop.getNumMessages() == 0)
        envelop.reserveMessages (transactions.size());
}

void CompositeTransaction::perform (Envelop& envelop)
{
    reserveMessages (envelop);
    ChildTransactionsScope scope (transactions);
    for (auto* transaction : transactions)
        transaction->perform (envelop);
}

// Backwards, so that objects destroyed last are back before their containers take older states.
void CompositeTransaction::undo (Envelop& envelop)
{
    reserveMessages (envelop);
    ChildTransactionsScope scope (transactions);
    for (size_t i = transactions.size(); i-- > 0;)
        transactions[i]->undo (envelop);
}

void CompositeTransaction::redo (Envelop& envelop)
{
    reserveMessages (envelop);
    ChildTransactionsScope scope (transactions);
    for (auto* transaction : transactions)
        transaction->redo (envelop);
}

juce::String CompositeTransaction::toString() const
{
    return getDescription().isEmpty() ? juce::String ("Composite Transaction") : getDescription();
}

} // namespace tov
