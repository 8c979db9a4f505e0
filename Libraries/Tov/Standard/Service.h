#pragma once

#include "../Atomic/AsyncTriggerManager.h"
#include "../Atomic/NameableObject.h"
#include "Accessor.h"
#include "ExecutionContext.h"
#include "RandomGenerator.h"
#include "SuccessStatus.h"
#include <atomic>
#include <memory>
#include <vector>

namespace tov
{

class History;
class InternalJuceThread;
class ObjectOwnedPointer;
class ObjectSpace;
class Peer;

/** A long-running object with a main loop of its own: the base of an application's services.

    A service runs on a thread of its own, named after it, or on the thread that starts it,
    which then drives it through callServiceUpdate. Everything it owns (its object spaces,
    its triggers, its context) belongs to that thread and has no lock; other threads reach
    it through messages to its peers.

    The program finds a service by its thread once the service has registered there: a
    service that wants getCurrentService and ExecutionContext::get to find it calls
    Program::registerService from its own thread before Service::serviceStarted, and
    unregisterService after Service::serviceStopped, so that both open and close its
    block in its own context.
*/
class Service : public NameableObject
{
public:
    TOV_DECLARE_CLASS (Service, NameableObject)

    Service();
    explicit Service (const juce::String& name);
    ~Service() override;

    //==============================================================================
    /** Appends every peer of the service, always in the same order. */
    virtual void getPeers (std::vector<Peer*>& result) = 0;
    /** The one context of this service; it lives at least as long as the service. */
    virtual ExecutionContext& getExecutionContext() = 0;
    virtual History* getHistory (const Object& object, const ObjectSpace* space) const { return nullptr; }

    juce::String getFriendlyName() const override       { return name.get(); }

    //==============================================================================
    /** On the calling thread: serviceStarted's result; the caller then drives the passes.
        Otherwise starts the service's thread and answers true at once. */
    bool startService (bool runOnCurrentThread);
    /** Stops the thread, waiting at most that long, or calls serviceStopped on the calling
        thread for a service that runs there. Either way the service is stopped afterwards. */
    void stopService (int timeOutMilliseconds);

    /** One pass: serviceUpdated, then, when it went on and callPostUpdate asks, servicePostUpdated.
        False when serviceUpdated asked to stop. */
    bool callServiceUpdate (bool callPostUpdate);

    //==============================================================================
    /** The thread id differs from the invalid one. */
    bool isServiceRunning() const noexcept              { return threadId.load() != getInvalidThreadId(); }
    void* getThreadId() const noexcept                  { return threadId.load(); }
    void setThreadIdToCurrent() noexcept;
    /** 0xdeaddead, not null, marks a stopped service. */
    static void* getInvalidThreadId() noexcept          { return reinterpret_cast<void*> (static_cast<uintptr_t> (0xdeaddead)); }

    /** The service that registered the calling thread; null for none, or once the program stopped. */
    static Service* getCurrentService();

    RandomGenerator& getRandomGenerator() noexcept      { return randomGenerator; }
    const RandomGenerator& getRandomGenerator() const noexcept  { return randomGenerator; }
    /** The generator that objects placed below this one take their identifiers from: that of
        the nearest service among the object and its ancestors, else of the current service,
        else the calling thread's own (for code outside any service, as tools and tests). */
    static RandomGenerator& getRandomGeneratorFor (const Object* object);
    /** The generator of a thread without a service, seeded from the clock when first asked. */
    static RandomGenerator& getCallingThreadRandomGenerator();

    AsyncTriggerManager& getAsyncTriggerManager() noexcept              { return asyncTriggerManager; }
    const AsyncTriggerManager& getAsyncTriggerManager() const noexcept  { return asyncTriggerManager; }
    /** The accessor of code that has none of its own (see Accessor::getAccessor). */
    Accessor& getDefaultAccessor() noexcept             { return defaultAccessor; }
    const Accessor& getDefaultAccessor() const noexcept { return defaultAccessor; }
    /** How the service is doing; services that wait for this one report it when it stops. */
    SuccessStatus& getStatus() noexcept                 { return status; }
    const SuccessStatus& getStatus() const noexcept     { return status; }

    /** Gives the service a log file of its own, named after it. */
    void enableLogging();

    //==============================================================================
    /** Changes that are applied without becoming transactions or being mirrored; the
        service's triggers wait until the bypass ends. */
    void startBypassTransaction();
    void finishBypassTransaction();
    bool isInsideBypassTransaction() const noexcept     { return insideBypassTransaction; }

    //==============================================================================
    /** Runs passes of this service, with no post update in a pass that ends the wait, until
        the predicate holds on the subject, the time-out passes, this service stops, or the
        other service (when given) stops. False, with the reason on the context (the
        service's own when null), unless the predicate came to hold. */
    bool updateUntil (juce::String taskName, const ObjectPredicate& predicate, const Object& subject,
                      uint64_t timeOutMilliseconds, const Service* otherService, ExecutionContext* context);
    bool updateUntilPointerIsSet (const juce::String& taskName, const ObjectOwnedPointer& pointer,
                                  uint64_t timeOutMilliseconds, const Service* otherService);
    /** Waits for a mirrored space's root, as the task "<Space> mirroring". */
    bool updateUntilRootExists (const ObjectSpace& space, uint64_t timeOutMilliseconds, const Service* otherService);
    bool updateUntilRootDeletion (const ObjectSpace& space, uint64_t timeOutMilliseconds, const Service* otherService);
    /** True while updateUntil runs its passes; triggers are not flushed then. */
    bool isInsideUpdateUntilLoop() const noexcept       { return insideUpdateUntilLoop; }

protected:
    /** Marks the thread as the service's and opens the service's block in the calling
        thread's context, once per start. A subclass calls this first. */
    virtual bool serviceStarted();
    /** One pass of work: the peers' incoming messages, mirroring, then the triggers.
        A subclass runs it among its own work; false ends the service's loop. */
    virtual bool serviceUpdated();
    virtual void servicePostUpdated()                   {}
    /** A last flush, the roots of the service's spaces deleted, the triggers finalized, the
        service's block closed and the views of the calling thread's context deleted. */
    virtual void serviceStopped();

    void processIncomingMessagesFromAllPeers (ExecutionContext& context);
    void updateMirroringToAllPeers (double nowSeconds, double period);
    /** Nothing while the service is stopped, inside a bypass or inside a wait. */
    void flushAsyncTriggers (ExecutionContext& context);

private:
    friend class InternalJuceThread;

    std::atomic<void*> threadId { getInvalidThreadId() };
    RandomGenerator randomGenerator;
    SuccessStatus status;
    bool insideBypassTransaction = false;
    AsyncTriggerManager asyncTriggerManager;
    std::unique_ptr<InternalJuceThread> thread;
    Accessor defaultAccessor;
    bool entered = false;
    bool insideUpdateUntilLoop = false;

    template <class Operation>
    void forEachPeer (Operation&& operation);
    void markStopped() noexcept                         { threadId = getInvalidThreadId(); }
    void deleteRootsOfObjectSpaces();
    bool leaveUpdateUntil (bool result);
    bool leaveUpdateUntil (ExecutionContext& context, const juce::String& error);

    JUCE_DECLARE_NON_COPYABLE (Service)
};

} // namespace tov
