#include "ThreadAwareEnvelopQueueMessageTarget.h"
#include "../Envelop.h"

namespace tov
{

TOV_BEGIN_CLASS (ThreadAwareEnvelopQueueMessageTarget)
TOV_END_CLASS()

ThreadAwareEnvelopQueueMessageTarget::ThreadAwareEnvelopQueueMessageTarget (Object* identifier)
    : MessageTarget (identifier)
{
    envelops.reserve (reservedNumEnvelops);
}

ThreadAwareEnvelopQueueMessageTarget::~ThreadAwareEnvelopQueueMessageTarget()
{
    clearEnvelops();
}

// The thread is asked under the queue's lock and woken under the wake lock: forgetThread takes
// both before the thread object goes, so a poster never asks or wakes a deleted thread.
bool ThreadAwareEnvelopQueueMessageTarget::handleEnvelop (Envelop* envelop)
{
    if (envelop == nullptr)
        return false;

    bool accepted = true, wake = false;
    {
        const std::lock_guard<std::mutex> lock (queueLock);
        auto* owner = thread.load();
        if (owner != nullptr && owner->threadShouldExit())
        {
            accepted = false;
        }
        else
        {
            // A queue that already held envelops has woken its thread, which takes them all.
            wake = owner != nullptr && envelops.empty();
            envelops.push_back (envelop);
        }
    }
    if (wake)
    {
        const std::lock_guard<std::mutex> lock (wakeLock);
        if (auto* owner = thread.load())
            owner->notify();
    }
    if (! accepted)
        envelop->deleteThis();
    return accepted;
}

// An empty queue is left as it is, keeping its room; a full one is swapped for a new vector
// with room for as many as the queue was made for.
void ThreadAwareEnvelopQueueMessageTarget::takeEnvelops (std::vector<Envelop*>& result)
{
    if (thread.load() == nullptr)
        thread = juce::Thread::getCurrentThread();

    std::vector<Envelop*> replacement;
    {
        const std::lock_guard<std::mutex> lock (queueLock);
        if (envelops.empty())
            return;
    }
    replacement.reserve (reservedNumEnvelops);
    {
        const std::lock_guard<std::mutex> lock (queueLock);
        envelops.swap (replacement);
    }
    result.swap (replacement);
}

void ThreadAwareEnvelopQueueMessageTarget::clearEnvelops()
{
    std::vector<Envelop*> taken;
    {
        const std::lock_guard<std::mutex> lock (queueLock);
        taken.swap (envelops);
    }
    deleteEnvelops (taken);
}

size_t ThreadAwareEnvelopQueueMessageTarget::getNumEnvelops() const
{
    const std::lock_guard<std::mutex> lock (queueLock);
    return envelops.size();
}

void ThreadAwareEnvelopQueueMessageTarget::forgetThread (const juce::Thread* goingThread)
{
    const std::lock_guard<std::mutex> lock (queueLock);
    const std::lock_guard<std::mutex> wakeGuard (wakeLock);
    if (thread.load() == goingThread)
        thread = nullptr;
}

void ThreadAwareEnvelopQueueMessageTarget::deleteEnvelops (const std::vector<Envelop*>& toDelete)
{
    for (auto* envelop : toDelete)
        envelop->deleteThis();
}

} // namespace tov
