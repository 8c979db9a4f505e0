#include "MessageTarget.h"
#include "Envelop.h"

namespace tov
{

TOV_BEGIN_CLASS (MessageTarget)
    TOV_VARIABLE (identifier)
TOV_END_CLASS()

MessageTarget::MessageTarget (Object* newIdentifier)
{
    identifier.setParent (this);
    identifier.set (newIdentifier, false);
}

MessageTarget::~MessageTarget()
{
    const std::lock_guard<std::mutex> lock (identifierLock);
    identifier.reset (false);
}

bool MessageTarget::postEnvelop (Envelop* envelop)
{
    if (envelop == nullptr)
        return false;
    if (envelop->getNumMessages() == 0)
    {
        envelop->deleteThis();
        return true;
    }
    envelop->stampPostingTime();
    return handleEnvelop (envelop);
}

Envelop* MessageTarget::createEnvelopAsSender (Message* message, Object* parent) const
{
    ObjectOwnedPointer sender;
    if (! loadIdentifier (sender))
    {
        if (message != nullptr)
            message->deleteThis();
        return nullptr;
    }
    auto* envelop = new Envelop (sender.release(), message);
    envelop->setParent (parent);
    return envelop;
}

bool MessageTarget::storeIdentifier (const Object& newIdentifier)
{
    const std::lock_guard<std::mutex> lock (identifierLock);
    if (identifier.get() != nullptr)
        return identifier->equals (newIdentifier);
    identifier.set (newIdentifier.clone(), false);
    return true;
}

// The clone is made under the lock and handed over outside it: setting the pointer may run
// views and the old value's destruction.
bool MessageTarget::loadIdentifier (ObjectOwnedPointer& result) const
{
    Object* copy = nullptr;
    {
        const std::lock_guard<std::mutex> lock (identifierLock);
        if (identifier.get() != nullptr)
            copy = identifier->clone();
    }
    if (copy == nullptr)
        return false;
    result.set (copy, false);
    return true;
}

bool MessageTarget::hasIdentifierEqualTo (const Object& other) const
{
    const std::lock_guard<std::mutex> lock (identifierLock);
    return identifier.get() != nullptr && identifier->equals (other);
}

} // namespace tov
