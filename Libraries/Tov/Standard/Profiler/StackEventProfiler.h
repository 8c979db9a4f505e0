#pragma once

#include "Profiler.h"
#include <deque>
#include <map>
#include <memory>

namespace tov
{

/** A profiler that keeps, for each thread, the stack of its open events: a back-end makes an
    Event when a scope begins and is handed it back when the scope ends.

    The threads fall in three classes, each of which can be left out: the rendering thread, the
    user interface thread, and the others. Only back-ends that record all threads see threads
    other than the rendering thread. A thread left out returns before anything is made.

    The rendering and user interface stacks belong to their threads and have no lock; the
    stacks of the other threads are found in a map under a lock, and then used without it.
*/
template <class Event>
class StackEventProfiler : public Profiler
{
public:
    void beginEvent (juce::StringRef name, int category) override
    {
        if (isCurrentThreadRecorded())
            getCurrentThreadStack().push_back (makeEvent (name, category));
    }

    /** Without an open event on the thread, nothing happens. */
    void endEvent() override
    {
        if (! isCurrentThreadRecorded())
            return;
        auto& stack = getCurrentThreadStack();
        if (stack.empty())
            return;
        // Finished while still on the stack, so that the back-end sees the depth it had.
        Event event (std::move (stack.back()));
        eventFinished (event);
        stack.pop_back();
    }

    /** Names the rendering thread, the first time it begins a frame. */
    void beginFrame() override
    {
        if (! renderingThreadNamed && isRenderingThreadCurrent())
        {
            renderingThreadNamed = true;
            setThreadName ("Kelvo Render", getCurrentSystemThreadId());
        }
    }

    //==============================================================================
    /** Which classes of threads are recorded; all at first. Set once, before anything is
        recorded: a scope that began while its class was on ends as if it had not. */
    void setRecordRenderingThread (bool shouldRecord) noexcept          { recordRenderingThread = shouldRecord; }
    void setRecordUserInterfaceThread (bool shouldRecord) noexcept      { recordUserInterfaceThread = shouldRecord; }
    void setRecordOtherThreads (bool shouldRecord) noexcept             { recordOtherThreads = shouldRecord; }
    bool isRecordingRenderingThread() const noexcept                    { return recordRenderingThread; }
    bool isRecordingUserInterfaceThread() const noexcept                { return recordUserInterfaceThread; }
    bool isRecordingOtherThreads() const noexcept                       { return recordOtherThreads; }

    /** The number of events open on the calling thread. */
    size_t getCurrentThreadStackDepth()                                 { return getCurrentThreadStack().size(); }

    /** Where a back-end that sends its data sends it unless told otherwise. */
    const juce::String& getAddress() const noexcept                     { return address; }

protected:
    virtual Event makeEvent (juce::StringRef name, int category) = 0;
    virtual void eventFinished (Event& event) = 0;
    virtual void setThreadName (const juce::String& name, uint32_t threadId) {}
    virtual bool recordsAllThreads() const                              { return false; }

    /** Whether the calling thread's events are recorded: its class is on, and it is the
        rendering thread unless the back-end records all threads. */
    bool isCurrentThreadRecorded() const
    {
        if (isRenderingThreadCurrent())
            return recordRenderingThread;
        if (! recordsAllThreads())
            return false;
        if (isUserInterfaceThreadCurrent())
            return recordUserInterfaceThread;
        return recordOtherThreads;
    }

    /** The calling thread's stack, made (and the thread named) on its first use. */
    std::deque<Event>& getCurrentThreadStack()
    {
        if (isRenderingThreadCurrent())
            return renderingStack;
        if (isUserInterfaceThreadCurrent())
        {
            if (claimUserInterfaceThreadNaming())
                setThreadName ("Kelvo Main Thread", getCurrentSystemThreadId());
            return userInterfaceStack;
        }
        return getOtherThreadStack();
    }

    juce::String address { "127.0.0.1" };

private:
    std::deque<Event> renderingStack;
    std::deque<Event> userInterfaceStack;
    std::map<uint32_t, std::unique_ptr<std::deque<Event>>> otherStacks;
    bool renderingThreadNamed = false;
    juce::CriticalSection otherStacksLock;
    std::atomic<bool> recordRenderingThread { true };
    std::atomic<bool> recordUserInterfaceThread { true };
    std::atomic<bool> recordOtherThreads { true };

    std::deque<Event>& getOtherThreadStack()
    {
        const auto threadId = getCurrentSystemThreadId();
        const juce::ScopedLock lock (otherStacksLock);
        auto& stack = otherStacks[threadId];
        if (stack == nullptr)
        {
            stack = std::make_unique<std::deque<Event>>();
            if (auto* thread = juce::Thread::getCurrentThread())
                setThreadName (thread->getThreadName(), threadId);
        }
        return *stack;
    }
};

} // namespace tov
