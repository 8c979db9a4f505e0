#include "Envelop.h"
#include "../Core/RecycledBlocks.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

TOV_BEGIN_CLASS (Envelop)
    TOV_VARIABLE (senderIdentifier)
    TOV_VARIABLE (messages)
    TOV_VARIABLE (postingTimeInMs)
TOV_END_CLASS()

Envelop::Envelop()
{
    senderIdentifier.setParent (this);
    messages.setParent (this);
    postingTimeInMs.setParent (this);
}

Envelop::Envelop (Object* sender, Message* message)
    : Envelop()
{
    senderIdentifier.set (sender, false);
    if (message != nullptr)
        addMessage (message);
}

// A service takes every envelop queued since its last pass and deletes them together.
using EnvelopBlocks = ThreadRecycledBlocks<Envelop, RecycledBlocks::defaultCapacity>;

void* Envelop::operator new (size_t size)                        { return EnvelopBlocks::allocate (size); }
void Envelop::operator delete (void* block, size_t size) noexcept  { EnvelopBlocks::deallocate (block, size); }

void Envelop::addMessage (Message* message)
{
    messages.append (message, false);
}

void Envelop::stampPostingTime()
{
    postingTimeInMs.set (juce::Time::getMillisecondCounterHiRes(), false);
}

//==============================================================================
// The two variables of an envelop's wire form, made once rather than for every envelop sent.
static const juce::String envelopName ("envelop"), receiverName ("receiver");

bool Envelop::saveToMemoryBlock (const ObjectOwnedPointer& receiver, juce::MemoryBlock& block) const
{
    State root;
    root.reserveVariables (2);
    root.addVariable (envelopName, makeState (false, true));
    root.addVariable (receiverName, receiver.makeState (false, true));

    // Written where the thread keeps the room of its last envelops, then appended at its size:
    // a block grown for the writing and trimmed after it cost two allocations per envelop. The
    // room of a large envelop (a snapshot of a whole space) is not kept.
    constexpr size_t keptRoom = 64 * 1024;
    thread_local auto output = std::make_unique<juce::MemoryOutputStream>();
    output->reset();
    const bool written = root.toBinary (*output);
    if (written)
        block.append (output->getData(), output->getDataSize());
    if (output->getDataSize() > keptRoom)
        output = std::make_unique<juce::MemoryOutputStream>();
    return written;
}

// A native pointer means something only inside the process that wrote it: from outside it is
// an address chosen by the sender, never to be followed.
static bool containsNativePointer (const State& state)
{
    switch (state.getType())
    {
        case StateType::nativePointerType:  return true;
        case StateType::ownedPointerType:   return state.getOwnedPointer() != nullptr && containsNativePointer (*state.getOwnedPointer());
        case StateType::variablesType:
            for (size_t i = 0; i < state.getNumVariables(); ++i)
                if (state.getVariableState (i) != nullptr && containsNativePointer (*state.getVariableState (i)))
                    return true;
            return false;
        default:                            return false;
    }
}

bool Envelop::loadFromMemoryBlock (ExecutionContext& context, const juce::MemoryBlock& block, ObjectOwnedPointer& receiver)
{
    juce::MemoryInputStream input (block, false);
    State root;
    juce::String error;
    if (! root.loadFromBinary (input, error))
    {
        context.error (error);
        return false;
    }
    if (containsNativePointer (root))
    {
        context.error ("Native pointer in an envelop from outside the process");
        return false;
    }

    auto envelopState = root.getVariableStateByName (envelopName);
    auto receiverState = root.getVariableStateByName (receiverName);
    if (envelopState == nullptr || receiverState == nullptr)
    {
        context.error ("Missing envelop or receiver state");
        return false;
    }
    return loadFromState (context, envelopState) && receiver.loadFromState (context, receiverState);
}

Envelop* Envelop::createFromMemoryBlock (ExecutionContext& context, const juce::MemoryBlock& block, ObjectOwnedPointer& receiver)
{
    auto* envelop = new Envelop();
    if (! envelop->loadFromMemoryBlock (context, block, receiver) || ! envelop->hasSenderIdentifier())
    {
        envelop->deleteThis();
        return nullptr;
    }
    logIncomingMessages (*envelop);
    return envelop;
}

// The frequent traffic stays out of the debug output; the rest is worth a line each.
void Envelop::logIncomingMessages (const Envelop& envelop)
{
    static const juce::StringArray quietClasses { "DiffObjectSpaceMessage", "ControlEventMessage", "NetworkClockMessage",
                                                  "MirroringMessage", "RemoteCallQueryMessage" };
    for (auto* message : envelop.messages)
    {
        auto* messageClass = message->getClass();
        const juce::String className = messageClass != nullptr ? messageClass->getName() : juce::String();
        if (! quietClasses.contains (className))
            juce::Logger::outputDebugString ("== NETWORK == Process incoming message " + message->toString());
    }
}

} // namespace tov
