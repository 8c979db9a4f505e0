#include "History.h"
#include "DummyTransaction.h"
#include "../Envelop.h"
#include <algorithm>

namespace tov
{

TOV_BEGIN_CLASS (History)
    TOV_VARIABLE (receiverMessageTarget)
    TOV_VARIABLE (senderMessageTarget)
    TOV_VARIABLE (transactions)
    TOV_VARIABLE (position)
TOV_END_CLASS()

static const juce::String clearedHistoryDescription = "Clear history";

History::History()
{
    transactions.setParent (this);
    position.setParent (this);
}

void History::setMessageTargets (MessageTarget& receiver, MessageTarget& sender)
{
    receiverMessageTarget.set (&receiver, false);
    senderMessageTarget.set (&sender, false);
}

//==============================================================================
void History::addTransaction (Transaction* transaction)
{
    if (transactions.size() == 0)
        return transactions.append (transaction);

    const auto previousPosition = getPosition();
    if (previousPosition + 1 < transactions.size())
        transactions.resize (previousPosition + 1);
    transactions.append (transaction);
    position.set ((int64_t) previousPosition + 1);
}

void History::clear (const juce::String& description)
{
    transactions.clear();
    transactions.append (new DummyTransaction (description));
    position.set (0);
}

//==============================================================================
template <class Step>
void History::runAndPost (Transaction& transaction, Step&& step)
{
    auto* envelop = senderMessageTarget->createEnvelopAsSender (nullptr, &transaction);
    step (*envelop);
    receiverMessageTarget->postEnvelop (envelop);
}

void History::undo()
{
    auto& transaction = *transactions[getPosition()];
    runAndPost (transaction, [&] (Envelop& envelop) { transaction.undo (envelop); });
    position.set ((int64_t) getPosition() - 1);
}

void History::redo()
{
    position.set ((int64_t) getPosition() + 1);
    auto& transaction = *transactions[getPosition()];
    runAndPost (transaction, [&] (Envelop& envelop) { transaction.redo (envelop); });
}

void History::moveToPosition (size_t newPosition)
{
    // Past the last transaction there is nothing to redo: the move stops at the last one.
    if (transactions.size() == 0)
        return;
    newPosition = std::min (newPosition, transactions.size() - 1);
    if (newPosition == getPosition())
        return;
    while (getPosition() > newPosition)
        undo();
    while (getPosition() < newPosition)
        redo();
    position.set ((int64_t) newPosition);
}

void History::moveToTransaction (Transaction& transaction)
{
    const int index = transactions.find (&transaction);
    if (index >= 0)
        moveToPosition ((size_t) index);
}

bool History::hasBeenPerformed (const Transaction& transaction) const
{
    const int index = transactions.find (&transaction);
    return index >= 0 && (size_t) index <= getPosition();
}

bool History::isInInitialPosition() const
{
    return getPosition() == 0 && (transactions.size() == 0 || transactions[0]->getDescription() != clearedHistoryDescription);
}

} // namespace tov
