#include "Event.h"
#include "Envelop.h"
#include "Peer.h"
#include "RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h"
#include "../Standard/Program.h"

namespace tov
{

TOV_BEGIN_CLASS (Event)
    TOV_VARIABLE (targetIdentifier)
    TOV_VARIABLE (message)
TOV_END_CLASS()

Event::Event()
{
    targetIdentifier.setParent (this);
    message.setParent (this);
}

Event::Event (Object* target, Message* eventMessage)
    : Event()
{
    registerEvent (target, eventMessage);
}

void Event::registerEvent (Object* target, Message* eventMessage)
{
    targetIdentifier.set (target, false);
    message.set (eventMessage, false);
}

void Event::unregisterEvent()
{
    registerEvent (nullptr, nullptr);
}

bool Event::isRegisteredEvent() const noexcept
{
    return targetIdentifier.get() != nullptr || message.get() != nullptr;
}

bool Event::signal (juce::String* error) const
{
    juce::String reason;
    if (send (reason))
        return true;
    if (error != nullptr)
        *error = reason;
    return false;
}

static bool fail (juce::String& error, const juce::String& reason)
{
    error = reason;
    return false;
}

bool Event::send (juce::String& error) const
{
    if (! isRegisteredEvent())
        return true;
    if (message.get() == nullptr)
        return fail (error, "Event message not set");
    if (targetIdentifier.get() == nullptr)
        return fail (error, "Event targetIdentifier not set");
    if (getParent() == nullptr)
        return fail (error, "Event parent not set: unable to find context object to resolve peer");

    auto* peer = Peer::get (*getParent());
    auto* envelop = peer != nullptr ? peer->getIncomingMessageTarget()->createEnvelopAsSender (static_cast<Message*> (message->clone()), nullptr)
                                    : nullptr;
    if (envelop == nullptr)
        return fail (error, "Event was unable to find identified sender peer");

    // What changed before the event reaches the mirrors first.
    peer->updateObjectSpacesMirroring (-1.0, 0.05);
    if (Program::isStillRunning() && Program::get().postEnvelopToMessageTarget (*targetIdentifier, envelop, nullptr))
        return true;
    if (! Program::isStillRunning())
        envelop->deleteThis();
    return fail (error, "Event was unable to send message to target " + targetIdentifier->toString());
}

} // namespace tov
