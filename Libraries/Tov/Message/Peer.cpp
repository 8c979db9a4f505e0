#include "Peer.h"
#include "../Standard/Profiler/ProfilerScope.h"
#include "Envelop.h"
#include "RemoteCall/CompletionRoutineTable.h"
#include "RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h"
#include "Mirroring/DiffObjectSpaceMessage.h"
#include "Mirroring/MirroringMessage.h"
#include "Mirroring/MirroringRequestAsyncCompletionRoutine.h"
#include "Mirroring/MirroringRequestRemoteCall.h"
#include "../Atomic/Integer.h"
#include "../Core/CachedDynamicCast.h"
#include "../Core/Class.h"
#include "../Core/MemberSignature.h"
#include "../Core/ObjectSpace.h"
#include "../Pointer/ObjectOwnedPointer.h"
#include "../Standard/Program.h"

namespace tov
{

TOV_BEGIN_CLASS (Peer)
TOV_END_CLASS()

Peer::Peer (Object* identifier)
    : completionRoutines (std::make_unique<CompletionRoutineTable>())
{
    setMultiThreadSafe (true);
    incomingMessageTarget = new ThreadAwareEnvelopQueueMessageTarget (identifier);
    incomingMessageTarget->setParent (this);
    if (identifier != nullptr && Program::isStillRunning())
        Program::get().registerPeer (*this);
}

Peer::~Peer()
{
    if (! isClassDefaultObject() && Program::isStillRunning())
        Program::get().unregisterPeer (*this);
    completionRoutines->cancelAll();
    completionRoutines.reset();
    incomingMessageTarget->deleteThis();
}

Peer* Peer::get (const Object& object)
{
    const Object* level = object.hasSpace() ? object.getSpace()->getParent() : object.getParent();
    for (; level != nullptr; level = level->getParent())
        if (auto* peer = cachedDynamicCast<Peer> (*level))
            return const_cast<Peer*> (peer);
    return nullptr;
}

bool Peer::storeIdentifierAndRegisterToPeerManager (const Object& identifier)
{
    if (incomingMessageTarget->hasIdentifierEqualTo (identifier))
        return true;
    if (! incomingMessageTarget->storeIdentifier (identifier))
        return false;
    return Program::isStillRunning() && Program::get().registerPeer (*this);
}

//==============================================================================
void Peer::pushCompletionRoutine (const Object& callIdentifier, AsyncCompletionRoutine& routine)
{
    completionRoutines->push (callIdentifier, routine);
}

AsyncCompletionRoutine* Peer::popCompletionRoutineFromIdentifier (const Object& callIdentifier)
{
    return completionRoutines->pop (callIdentifier);
}

void Peer::cancelAllCompletionRoutines()
{
    completionRoutines->cancelAll();
}

size_t Peer::getNumCompletionRoutines() const
{
    return completionRoutines->size();
}

//==============================================================================
void Peer::processIncomingMessages (ExecutionContext& context)
{
    const ProfilerScope scope ("ProcessIncomingMessages");
    std::vector<Envelop*> batch;
    incomingMessageTarget->takeEnvelops (batch);
    if (! batch.empty())
        processBatch (context, batch);
}

// The envelops are held while the batch runs: a message may drop what holds them.
void Peer::processBatch (ExecutionContext& context, const std::vector<Envelop*>& batch)
{
    for (auto* envelop : batch)
    {
        envelop->setParent (this);
        envelop->incrementReferenceCounter();
    }

    // Asked once: finding the calling thread costs more than asking it whether it stops.
    const auto* thread = juce::Thread::getCurrentThread();
    PendingDiffs pending;
    for (auto* envelop : batch)
        if (envelop->hasSenderIdentifier())
            processEnvelop (context, *envelop, thread, pending);

    Integer noSender;
    flushPendingDiffs (context, noSender, pending);

    for (auto* envelop : batch)
        envelop->decrementReferenceCounter();
}

// A message other than a diff first lets the diffs before it land, so that it never overtakes
// them; then what it did goes out to the mirrors before the next message is looked at.
void Peer::processEnvelop (ExecutionContext& context, const Envelop& envelop, const juce::Thread* thread, PendingDiffs& pending)
{
    const Object& sender = *envelop.getSenderIdentifier();
    for (size_t i = 0; i < envelop.getNumMessages() && (thread == nullptr || ! thread->threadShouldExit()); ++i)
    {
        auto* message = envelop.getMessage (i);
        if (Class::inheritsFrom (message->getClass(), &DiffObjectSpaceMessage::staticClass))
        {
            addPendingDiff (*static_cast<DiffObjectSpaceMessage*> (message), pending);
            continue;
        }
        flushPendingDiffs (context, sender, pending);
        message->process (context, sender, *incomingMessageTarget);
        if (message->getClass() != &MirroringMessage::staticClass)
            updateObjectSpacesMirroring (-1.0, 0.05);
    }
}

void Peer::addPendingDiff (DiffObjectSpaceMessage& diff, PendingDiffs& pending)
{
    auto entry = pending.find (diff.getTargetSpace());
    if (entry != pending.end())
    {
        entry->second->merge (diff);
        return;
    }
    diff.incrementReferenceCounter();
    pending.emplace (diff.getTargetSpace(), &diff);
}

// In order of space names, whatever order the diffs came in.
void Peer::flushPendingDiffs (ExecutionContext& context, const Object& senderIdentifier, PendingDiffs& pending)
{
    if (pending.empty())
        return;
    for (auto& entry : pending)
    {
        entry.second->process (context, senderIdentifier, *incomingMessageTarget);
        entry.second->decrementReferenceCounter();
    }
    pending.clear();
}

void Peer::clearIncomingMessages()
{
    incomingMessageTarget->clearEnvelops();
}

//==============================================================================
// The variables get their declared classes here, once: a peer made by its constructor
// rather than by its class has not had them yet.
void Peer::updateObjectSpaceCacheIfNeeded() const
{
    if (spaceCacheIsValid)
        return;
    auto* self = const_cast<Peer*> (this);
    for (size_t i = 0; i < getNumVariables(); ++i)
    {
        auto* variable = self->getVariable (i);
        if (auto* signature = getVariableSignature (i))
            if (auto* declaredClass = signature->getValueClass())
                variable->setClass (declaredClass);
        if (variable->getParent() == nullptr)
            variable->setParent (self);
        if (auto* space = dynamic_cast<ObjectSpace*> (variable))
            spaces.push_back (space);
    }
    spaceCacheIsValid = true;
}

const std::vector<ObjectSpace*>& Peer::getSpaces() const
{
    updateObjectSpaceCacheIfNeeded();
    return spaces;
}

ObjectSpace* Peer::getSpaceByName (const juce::String& name) const
{
    for (auto* space : getSpaces())
        if (space->getName() == name)
            return space;
    return nullptr;
}

template <class Operation>
void Peer::forEachSpace (Operation&& operation)
{
    for (auto* space : getSpaces())
        operation (*space);
}

void Peer::startBypassTransaction()     { forEachSpace ([] (ObjectSpace& space) { space.startBypassTransaction(); }); }
void Peer::finishBypassTransaction()    { forEachSpace ([] (ObjectSpace& space) { space.finishBypassTransaction(); }); }
void Peer::disableObjectSpacesMirroring() { forEachSpace ([] (ObjectSpace& space) { space.disableMirroring(); }); }

void Peer::addObjectSpacesMirroringTarget (const Object& targetIdentifier)
{
    ObjectOwnedPointer ownIdentifier;
    if (! incomingMessageTarget->loadIdentifier (ownIdentifier))
        return;
    forEachSpace ([&] (ObjectSpace& space) { space.addMirroringTargetIdentifier (*ownIdentifier, targetIdentifier); });
}

void Peer::removeObjectSpacesMirroringTarget (const Object& targetIdentifier)
{
    forEachSpace ([&] (ObjectSpace& space) { space.removeMirroringTargetIdentifier (targetIdentifier); });
}

void Peer::updateObjectSpacesMirroring (double nowSeconds, double periodSeconds)
{
    forEachSpace ([=] (ObjectSpace& space) { space.updateMirroring (nowSeconds, periodSeconds); });
}

bool Peer::asyncRequestMirroringFrom (MessageTarget& remoteTarget)
{
    bool result = true;
    for (auto* space : getSpaces())
    {
        MirroringRequestRemoteCall call (space->getName());
        result = call.callPerformAsync (*this, remoteTarget, *new MirroringRequestAsyncCompletionRoutine (*space), nullptr) && result;
    }
    return result;
}

} // namespace tov
