#include "InterprocessConnectionMessageTarget.h"
#include "Envelop.h"
#include "../Network/InterprocessConnectionTable.h"

namespace tov
{

TOV_BEGIN_CLASS (InterprocessConnectionMessageTarget)
TOV_END_CLASS()

InterprocessConnectionMessageTarget::InterprocessConnectionMessageTarget (InterprocessConnection& c, Object* targetIdentifier)
    : MessageTarget (targetIdentifier)
{
    connection.set (&c, false);
}

bool InterprocessConnectionMessageTarget::handleEnvelop (Envelop* envelop)
{
    if (envelop == nullptr)
        return false;
    // Deletes the envelop on every way out, unless somebody else holds it.
    envelop->incrementReferenceCounter();
    struct Release { Envelop* e; ~Release() { e->decrementReferenceCounter(); } } release { envelop };

    auto* target = connection.getIfAlreadyCached();
    if (target == nullptr)
        return false;
    // A client between two attempts still takes messages: they wait for the next connection.
    if (! target->isConnected() && ! target->isActiveConnection())
        return false;

    ObjectOwnedPointer receiver;
    if (! loadIdentifier (receiver))
        return false;
    if (target->getMagicNumber() != InterprocessConnection::envelopMagicNumber)
        return false;

    juce::MemoryBlock block;
    envelop->saveToMemoryBlock (receiver, block);
    target->pushMessageToSend (std::move (block));
    return true;
}

MessageTarget& InterprocessConnectionMessageTarget::getOrCreateThrough (const InterprocessConnection& c, const Object& targetIdentifier)
{
    return InterprocessConnectionTable::getOrCreateTarget (c, targetIdentifier);
}

void InterprocessConnectionMessageTarget::reset (const InterprocessConnection& c)
{
    InterprocessConnectionTable::resetTargets (c);
}

} // namespace tov
