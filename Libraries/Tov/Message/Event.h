#pragma once

#include "Message.h"
#include "../Pointer/OwnedPointer.h"

namespace tov
{

/** A message prepared in advance, sent to a fixed target on demand: a clone of the message goes
    out each time the event is signalled, in the name of the peer above the event. */
class Event : public Object
{
public:
    TOV_DECLARE_CLASS (Event, Object)

    Event();
    /** Takes ownership of both. */
    Event (Object* target, Message* message);

    /** Takes ownership of both, replacing what was registered. */
    void registerEvent (Object* target, Message* message);
    void unregisterEvent();
    /** Either a target or a message is set. */
    bool isRegisteredEvent() const noexcept;

    /** Sends a clone of the message to the target, after the peer's pending mirroring changes.
        True when it went, or when nothing is registered; otherwise false, with the reason in
        error when it is given. */
    bool signal (juce::String* error) const;
    bool signal() const                                  { return signal (nullptr); }

    Object* getReceiverPeerIdentifier() const noexcept   { return targetIdentifier.get(); }
    Message* getMessage() const noexcept                 { return message.get(); }

private:
    ObjectOwnedPointer targetIdentifier;
    OwnedPointer<Message> message;

    bool send (juce::String& error) const;
};

} // namespace tov
