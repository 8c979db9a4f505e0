#pragma once

#include "Profiler.h"
#include <vector>
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
    stacks of the other threads are found in a map under a lock, and then used without it: each
    thread looks its stack up once and keeps it.
*/
template <class Event>
class StackEventProfiler : public Profiler
{
public:
    void beginEvent (juce::StringRef name, int category) override
    {
        const auto threadClass = getCurrentThreadClass();
        if (isRecorded (threadClass))
            getStack (threadClass).push_back (makeEvent (name, category));
    }

    /** Without an open event on the thread, nothing happens. */
    void endEvent() override
    {
        const auto threadClass = getCurrentThreadClass();
        if (! isRecorded (threadClass))
            return;
        auto& stack = getStack (threadClass);
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
    bool isCurrentThreadRecorded() const                { return isRecorded (getCurrentThreadClass()); }
    /** The calling thread's stack, made (and the thread named) on its first use. */
    std::vector<Event>& getCurrentThreadStack()          { return getStack (getCurrentThreadClass()); }

    juce::String address { "127.0.0.1" };

private:
    std::vector<Event> renderingStack;
    std::vector<Event> userInterfaceStack;
    std::map<uint32_t, std::unique_ptr<std::vector<Event>>> otherStacks;
    bool renderingThreadNamed = false;
    juce::CriticalSection otherStacksLock;
    std::atomic<bool> recordRenderingThread { true };
    std::atomic<bool> recordUserInterfaceThread { true };
    std::atomic<bool> recordOtherThreads { true };

    bool isRecorded (ThreadClass threadClass) const
    {
        if (threadClass == ThreadClass::rendering)
            return recordRenderingThread;
        if (! recordsAllThreads())
            return false;
        return threadClass == ThreadClass::userInterface ? recordUserInterfaceThread : recordOtherThreads;
    }

    std::vector<Event>& getStack (ThreadClass threadClass)
    {
        if (threadClass == ThreadClass::rendering)
            return renderingStack;
        if (threadClass == ThreadClass::userInterface)
        {
            if (claimUserInterfaceThreadNaming())
                setThreadName ("Kelvo Main Thread", getCurrentSystemThreadId());
            return userInterfaceStack;
        }
        return getOtherThreadStack();
    }

    /** The map is looked up under the lock once per thread: the thread keeps what it found. */
    std::vector<Event>& getOtherThreadStack()
    {
        return findOncePerThread<std::vector<Event>> ([this]() -> std::vector<Event>& { return findOtherThreadStack(); });
    }

    std::vector<Event>& findOtherThreadStack()
    {
        const auto threadId = getCurrentSystemThreadId();
        const juce::ScopedLock lock (otherStacksLock);
        auto& stack = otherStacks[threadId];
        if (stack == nullptr)
        {
            stack = std::make_unique<std::vector<Event>>();
            if (auto* thread = juce::Thread::getCurrentThread())
                setThreadName (thread->getThreadName(), threadId);
        }
        return *stack;
    }
};

} // namespace tov
