#pragma once

#include "../Core/Object.h"
#include "../Core/ObjectSpaceProvider.h"
#include <atomic>
#include <map>
#include <memory>
#include <vector>

namespace tov
{

class AsyncCompletionRoutine;
class CompletionRoutineTable;
class DiffObjectSpaceMessage;
class Envelop;
class MessageTarget;
class ExecutionContext;
class ThreadAwareEnvelopQueueMessageTarget;

/** An addressable party: an identifier, an incoming queue, and the object spaces that the
    application's peer class declares as its member variables.

    A peer lives inside a service, whose thread processes its incoming messages in each pass.
    Other threads reach it only by posting envelops to its identifier (Program::postEnvelopToMessageTarget)
    or to its incoming target. It is the provider of its spaces: objects below it find them by name.
*/
class Peer : public Object, public ObjectSpaceProvider
{
public:
    TOV_DECLARE_CLASS (Peer, Object)

    /** Takes ownership of the identifier and registers with the program when it is not null;
        a peer made without one registers through storeIdentifierAndRegisterToPeerManager. */
    explicit Peer (Object* identifier = nullptr);
    /** Unregisters (unless it is a class default object or the program has stopped), cancels
        the calls still waiting, then deletes its incoming target with the envelops still queued. */
    ~Peer() override;

    /** The peer of an object: starting from the parent of the object's space, or from the
        object's parent when it has no space, that object or the nearest peer above it. */
    static Peer* get (const Object& object);

    ThreadAwareEnvelopQueueMessageTarget* getIncomingMessageTarget() const noexcept  { return incomingMessageTarget; }
    /** True when the peer has that identifier already; false when it has another one, or the
        program refuses it (its identifier taken, or the program stopped). */
    bool storeIdentifierAndRegisterToPeerManager (const Object& identifier);

    //==============================================================================
    /** On the service's thread: runs the messages queued since the last call, in arrival order.
        Diffs of one space that arrive between two other messages are applied as one. */
    void processIncomingMessages (ExecutionContext& context);
    /** Deletes the queued envelops unprocessed. */
    void clearIncomingMessages();

    //==============================================================================
    // The completion routines of this peer's remote calls that wait for an answer (RemoteCall.h)
    /** Enters the routine under a copy of the identifier; an entry with an equal one is given
        the new routine. */
    void pushCompletionRoutine (const Object& callIdentifier, AsyncCompletionRoutine& routine);
    /** Takes the entry out: its routine, or null when there is none or the routine has died. */
    AsyncCompletionRoutine* popCompletionRoutineFromIdentifier (const Object& callIdentifier);
    /** Completes every waiting routine with a null result, with the table's lock held, and
        empties the table. */
    void cancelAllCompletionRoutines();
    size_t getNumCompletionRoutines() const;
    /** 0, 1, 2...: the identifiers of calls that are given none. */
    uint64_t getNewAutomaticRemoteCallIdentifier() noexcept   { return nextAutomaticRemoteCallIdentifier++; }

    //==============================================================================
    /** The first of the peer's spaces with that name, or null. */
    ObjectSpace* getSpaceByName (const juce::String& name) const override;
    /** The spaces among the peer's variables, in declaration order. */
    const std::vector<ObjectSpace*>& getSpaces() const;

    void startBypassTransaction();
    void finishBypassTransaction();
    /** Every space mirrors to that target, in the name of this peer's identifier; nothing
        while the peer has no identifier. */
    void addObjectSpacesMirroringTarget (const Object& targetIdentifier);
    void removeObjectSpacesMirroringTarget (const Object& targetIdentifier);
    void disableObjectSpacesMirroring();
    void updateObjectSpacesMirroring (double nowSeconds, double periodSeconds);
    /** On the peer's service thread: asks the remote target for a mirror of each of this peer's spaces, by the name of the
        space: each snapshot becomes the root of the space when it comes, and diffs follow. True
        when every request was sent. A peer that reconnects must ask again. */
    bool asyncRequestMirroringFrom (MessageTarget& remoteTarget);

private:
    using PendingDiffs = std::map<juce::String, DiffObjectSpaceMessage*>;

    mutable std::vector<ObjectSpace*> spaces;
    mutable bool spaceCacheIsValid = false;
    ThreadAwareEnvelopQueueMessageTarget* incomingMessageTarget = nullptr;
    std::unique_ptr<CompletionRoutineTable> completionRoutines;
    std::atomic<uint64_t> nextAutomaticRemoteCallIdentifier { 0 };

    void updateObjectSpaceCacheIfNeeded() const;
    template <class Operation>
    void forEachSpace (Operation&& operation);

    void processBatch (ExecutionContext& context, const std::vector<Envelop*>& batch);
    void processEnvelop (ExecutionContext& context, const Envelop& envelop, const juce::Thread* thread, PendingDiffs& pending);
    void flushPendingDiffs (ExecutionContext& context, const Object& senderIdentifier, PendingDiffs& pending);
    static void addPendingDiff (DiffObjectSpaceMessage& diff, PendingDiffs& pending);

    JUCE_DECLARE_NON_COPYABLE (Peer)
};

} // namespace tov
