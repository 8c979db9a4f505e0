#include "Service.h"
#include "InternalJuceThread.h"
#include "LoggerExecutionContextView.h"
#include "Program.h"
#include "Profiler/ProfilerScope.h"
#include "../Core/CachedDynamicCast.h"
#include "../Core/ObjectSpace.h"
#include "../Message/Peer.h"
#include "../Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h"
#include "../Pointer/ObjectOwnedPointer.h"

namespace tov
{

TOV_BEGIN_CLASS (Service)
TOV_END_CLASS()

template <class Operation>
void Service::forEachPeer (Operation&& operation)
{
    std::vector<Peer*> peers;
    getPeers (peers);
    for (auto* peer : peers)
        operation (*peer);
}

Service::Service() = default;

Service::Service (const juce::String& serviceName)
    : randomGenerator (juce::Time::getHighResolutionTicks())
{
    name.set (serviceName, false);
}

// A service is stopped before it goes: its thread would otherwise run on in a dead object.
Service::~Service()
{
    jassert (thread == nullptr || ! thread->isThreadRunning());
}

void Service::setThreadIdToCurrent() noexcept
{
    threadId = (void*) juce::Thread::getCurrentThreadId();
}

Service* Service::getCurrentService()
{
    if (! Program::isStillRunning())
        return nullptr;
    return Program::get().getServiceByThreadId ((void*) juce::Thread::getCurrentThreadId());
}

RandomGenerator& Service::getRandomGeneratorFor (const Object* object)
{
    for (auto* level = object; level != nullptr; level = level->getParent())
        if (auto* service = cachedDynamicCast<Service> (*level))
            return const_cast<Service*> (service)->randomGenerator;
    if (auto* service = getCurrentService())
        return service->randomGenerator;
    return getCallingThreadRandomGenerator();
}

RandomGenerator& Service::getCallingThreadRandomGenerator()
{
    thread_local RandomGenerator generator (juce::Time::getHighResolutionTicks());
    return generator;
}

//==============================================================================
bool Service::startService (bool runOnCurrentThread)
{
    if (runOnCurrentThread)
    {
        setThreadIdToCurrent();
        return serviceStarted();
    }

    jassert (thread == nullptr);
    thread = std::make_unique<InternalJuceThread> (*this);
    thread->startThread();
    return true;
}

void Service::stopService (int timeOutMilliseconds)
{
    if (thread != nullptr)
    {
        if (thread->stopThread (timeOutMilliseconds))
        {
            // Posts to the peers ask their thread whether it stops: not once it is gone.
            forEachPeer ([this] (Peer& peer) { peer.getIncomingMessageTarget()->forgetThread (thread.get()); });
            thread.reset();
        }
        else
        {
            // The thread cannot be killed: it finishes the step it is in without us. Its
            // object must outlive it, so it is kept rather than deleted under its feet.
            thread->abandon();
            getExecutionContext().error ("Service: " + name.get() + " killed by force");
            thread.release();
        }
    }
    else if (isServiceRunning())
    {
        serviceStopped();
    }
    markStopped();
}

bool Service::callServiceUpdate (bool callPostUpdate)
{
    bool result;
    {
        // The name is the service's own string: nothing is built for the scope.
        const ProfilerScope scope (name.get());
        result = serviceUpdated();
    }
    if (! result || ! callPostUpdate)
        return result;
    const ProfilerScope scope ("PostUpdate");
    servicePostUpdated();
    return true;
}

//==============================================================================
bool Service::serviceStarted()
{
    setThreadIdToCurrent();
    if (! entered)
    {
        ExecutionContext::get().enter ("[" + name.get() + "]");
        entered = true;
    }
    return true;
}

bool Service::serviceUpdated()
{
    auto& context = getExecutionContext();
    processIncomingMessagesFromAllPeers (context);
    updateMirroringToAllPeers (juce::Time::getMillisecondCounterHiRes() / 1000.0, 0.05);
    flushAsyncTriggers (context);
    return true;
}

void Service::serviceStopped()
{
    auto& context = ExecutionContext::get();
    asyncTriggerManager.flushTriggers();
    deleteRootsOfObjectSpaces();
    asyncTriggerManager.finalize();
    if (entered)
    {
        context.leave();
        entered = false;
    }
    context.deleteAllViews();
}

// Deleting a root may change the service's variables: their number is read at each step.
void Service::deleteRootsOfObjectSpaces()
{
    for (size_t i = 0; i < getNumVariables(); ++i)
    {
        auto* variable = getVariable (i);
        if (variable != nullptr && Class::inheritsFrom (variable->getClass(), &ObjectSpace::staticClass))
            static_cast<ObjectSpace*> (variable)->deleteRootObject();
    }
}

//==============================================================================
void Service::processIncomingMessagesFromAllPeers (ExecutionContext& context)
{
    forEachPeer ([&context] (Peer& peer) { peer.processIncomingMessages (context); });
}

void Service::updateMirroringToAllPeers (double nowSeconds, double period)
{
    forEachPeer ([=] (Peer& peer) { peer.updateObjectSpacesMirroring (nowSeconds, period); });
}


void Service::flushAsyncTriggers (ExecutionContext&)
{
    if (isServiceRunning() && ! insideBypassTransaction && ! insideUpdateUntilLoop)
        asyncTriggerManager.flushTriggers();
}

//==============================================================================
void Service::enableLogging()
{
    getExecutionContext().addView (new LoggerExecutionContextView (name.get()));
}

void Service::startBypassTransaction()
{
    forEachPeer ([] (Peer& peer) { peer.startBypassTransaction(); });
    insideBypassTransaction = true;
}

void Service::finishBypassTransaction()
{
    forEachPeer ([] (Peer& peer) { peer.finishBypassTransaction(); });
    insideBypassTransaction = false;
}

//==============================================================================
bool Service::updateUntil (juce::String taskName, const ObjectPredicate& predicate, const Object& subject,
                           uint64_t timeOutMilliseconds, const Service* otherService, ExecutionContext* context)
{
    auto& reportTo = context != nullptr ? *context : getExecutionContext();

    // Predicates answer questions; the interface that asks them predates const.
    auto holds = [&predicate, &subject]
    {
        return const_cast<ObjectPredicate&> (predicate).doesAcceptObject (const_cast<Object*> (&subject));
    };
    if (holds())
        return true;

    const uint32_t start = juce::Time::getMillisecondCounter();
    insideUpdateUntilLoop = true;
    while ((uint64_t) (uint32_t) (juce::Time::getMillisecondCounter() - start) < timeOutMilliseconds)
    {
        if (! callServiceUpdate (false))
            return leaveUpdateUntil (reportTo, taskName + " interrupted by service stop");
        if (holds())
            return leaveUpdateUntil (true);
        if (otherService != nullptr && ! otherService->isServiceRunning())
            return leaveUpdateUntil (reportTo, otherService->name.get() + " has exited prematurely - " + otherService->getStatus().toString());
        // Here and not in the pass: a pass that ends the wait has no post update.
        servicePostUpdated();
    }
    return leaveUpdateUntil (reportTo, "Time-out while waiting for " + taskName);
}

bool Service::leaveUpdateUntil (bool result)
{
    insideUpdateUntilLoop = false;
    return result;
}

bool Service::leaveUpdateUntil (ExecutionContext& context, const juce::String& error)
{
    insideUpdateUntilLoop = false;
    context.error (error);
    return false;
}

bool Service::updateUntilPointerIsSet (const juce::String& taskName, const ObjectOwnedPointer& pointer,
                                       uint64_t timeOutMilliseconds, const Service* otherService)
{
    return updateUntil (taskName, OwnedPointerIsSet(), pointer, timeOutMilliseconds, otherService, nullptr);
}

static juce::String getTaskNameOfSpace (const ObjectSpace& space)
{
    const auto& spaceName = space.getName();
    return spaceName.substring (0, 1).toUpperCase() + spaceName.substring (1);
}

bool Service::updateUntilRootExists (const ObjectSpace& space, uint64_t timeOutMilliseconds, const Service* otherService)
{
    return updateUntilPointerIsSet (getTaskNameOfSpace (space) + " mirroring", space.getRootObjectPointer(), timeOutMilliseconds, otherService);
}

bool Service::updateUntilRootDeletion (const ObjectSpace& space, uint64_t timeOutMilliseconds, const Service* otherService)
{
    return updateUntil (getTaskNameOfSpace (space), OwnedPointerIsReset(), space.getRootObjectPointer(), timeOutMilliseconds, otherService, nullptr);
}

} // namespace tov
