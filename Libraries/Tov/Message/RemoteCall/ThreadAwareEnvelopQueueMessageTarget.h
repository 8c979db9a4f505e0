#pragma once

#include "../MessageTarget.h"
#include <atomic>
#include <mutex>
#include <vector>

namespace tov
{

/** The incoming queue of a peer: any thread posts, the owner's service thread takes.

    The owner takes the whole queue at once by swapping it with an empty vector, so that posters
    and the owner meet at the lock for a few instructions only. A post wakes the owner's thread
    at once. Once the owner's thread is told to exit, posts are refused and their envelops deleted.

    The lock is a plain mutex: nothing done under it (appending, swapping, asking the thread
    whether it stops) comes back to this queue, and envelops are deleted outside it. The thread
    is woken after that lock is released, under a lock of its own that forgetThread also takes:
    the woken thread, which goes straight for the queue, never finds the poster still holding it.
*/
class ThreadAwareEnvelopQueueMessageTarget : public MessageTarget
{
public:
    TOV_DECLARE_CLASS (ThreadAwareEnvelopQueueMessageTarget, MessageTarget)

    explicit ThreadAwareEnvelopQueueMessageTarget (Object* identifier = nullptr);
    /** Deletes the envelops still queued. */
    ~ThreadAwareEnvelopQueueMessageTarget() override;

    bool handleEnvelop (Envelop* envelop) override;

    /** On the owner's thread: remembers that thread, the first time, as the one to wake and to
        ask whether it is stopping, then moves the whole queue into result, in arrival order. */
    void takeEnvelops (std::vector<Envelop*>& result);
    /** Deletes every queued envelop, outside the lock. */
    void clearEnvelops();
    size_t getNumEnvelops() const;

    /** The thread that takes the queue, null until it first does. */
    juce::Thread* getThread() const noexcept             { return thread.load(); }
    /** Called before the owner's thread object goes: posts no longer look at it. */
    void forgetThread (const juce::Thread* goingThread);

    static constexpr size_t reservedNumEnvelops = 100;

private:
    std::atomic<juce::Thread*> thread { nullptr };
    mutable std::mutex queueLock;
    std::mutex wakeLock;
    std::vector<Envelop*> envelops;

    static void deleteEnvelops (const std::vector<Envelop*>& toDelete);
};

} // namespace tov
