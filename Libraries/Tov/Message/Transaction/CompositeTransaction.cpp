#include "CompositeTransaction.h"

namespace tov
{

TOV_BEGIN_CLASS (CompositeTransaction)
    TOV_VARIABLE (transactions)
TOV_END_CLASS()

void CompositeTransaction::perform (Envelop& envelop)
{
    for (auto* transaction : transactions)
        transaction->perform (envelop);
}

// Backwards, so that objects destroyed last are back before their containers take older states.
void CompositeTransaction::undo (Envelop& envelop)
{
    for (size_t i = transactions.size(); i-- > 0;)
        transactions[i]->undo (envelop);
}

void CompositeTransaction::redo (Envelop& envelop)
{
    for (auto* transaction : transactions)
        transaction->redo (envelop);
}

juce::String CompositeTransaction::toString() const
{
    return getDescription().isEmpty() ? juce::String ("Composite Transaction") : getDescription();
}

} // namespace tov
