#pragma once

#include "Message.h"
#include "../Atomic/Units.h"
#include "../Container/OwnedVector.h"
#include "../Pointer/ObjectOwnedPointer.h"

namespace juce { class MemoryBlock; }

namespace tov
{

/** A batch of messages with the identifier of their sender: what message targets accept.

    Messages are processed in the order they were added. The class is spelled without a final
    e, as is the key "envelop" of its wire form.

    Every post takes ownership of the envelop, also when it fails: after MessageTarget::postEnvelop
    the caller never touches it again. An envelop to a peer in the same process moves as a
    pointer; one to another machine travels as the binary form of one State:
        "envelop"   the envelop, with its class and all its variables
        "receiver"  the owned pointer that holds the receiver's identifier on the far side
*/
class Envelop : public Object
{
public:
    TOV_DECLARE_CLASS (Envelop, Object)

    Envelop();
    /** Takes ownership of both; either may be null. */
    Envelop (Object* senderIdentifier, Message* message);

    /** Envelops come and go in bursts (a service takes every envelop queued since its last
        pass and deletes them together): their blocks are recycled by the thread that deletes
        them, for the next envelops it makes. */
    static void* operator new (size_t size);
    static void operator delete (void* block, size_t size) noexcept;

    //==============================================================================
    /** Appends the message and takes ownership of it. */
    void addMessage (Message* message);
    void reserveMessages (size_t count)                  { messages.reserve (count); }
    Message* getMessage (size_t index) const             { return messages.get (index); }
    size_t getNumMessages() const noexcept               { return messages.size(); }
    const OwnedVector<Message>& getMessages() const noexcept  { return messages; }

    Object* getSenderIdentifier() const noexcept         { return senderIdentifier.get(); }
    bool hasSenderIdentifier() const noexcept            { return senderIdentifier.get() != nullptr; }
    /** Replaces the sender identifier, taking ownership of the new one. */
    void setSenderIdentifier (Object* identifier)        { senderIdentifier.set (identifier, false); }
    /** Gives up the sender identifier, which the caller then owns. */
    Object* releaseSenderIdentifier()                    { return senderIdentifier.release(); }

    /** juce::Time::getMillisecondCounterHiRes() when it was last posted. */
    double getPostingTimeInMs() const noexcept           { return postingTimeInMs.get(); }
    void stampPostingTime();

    //==============================================================================
    /** Appends the wire form of this envelop, addressed to the receiver, to the block. */
    bool saveToMemoryBlock (const ObjectOwnedPointer& receiver, juce::MemoryBlock& block) const;
    /** Reads the wire form into this envelop and the receiver; false with the reason on the context. */
    bool loadFromMemoryBlock (ExecutionContext& context, const juce::MemoryBlock& block, ObjectOwnedPointer& receiver);
    /** A new envelop read from the wire form, or null when it does not load or has no sender:
        an answer could not find its way back. */
    static Envelop* createFromMemoryBlock (ExecutionContext& context, const juce::MemoryBlock& block, ObjectOwnedPointer& receiver);

private:
    ObjectOwnedPointer senderIdentifier;
    OwnedVector<Message> messages;
    Milliseconds postingTimeInMs;

    static void logIncomingMessages (const Envelop& envelop);
};

} // namespace tov
