#pragma once

#include <Tov/Standard/Profiler/StackEventProfiler.h>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tov::test
{

/** An event of the RecordingStackProfiler: the name and category it began with. */
struct RecordedEvent
{
    juce::String name;
    int category = 0;
};

/** A stack profiler that writes down, in order, every event it makes ("make Name 3"), every
    event it finishes with the depth of its thread's stack ("finished Name at 1"), every mark,
    frame and thread name ("thread Kelvo Render"). It records all threads unless told not to. */
class RecordingStackProfiler : public StackEventProfiler<RecordedEvent>
{
public:
    explicit RecordingStackProfiler (bool allThreads = true) : allThreads (allThreads) {}

    void beginFrame() override                      { StackEventProfiler::beginFrame(); write ("begin frame"); }
    void endFrame() override                        { write ("end frame"); }
    void markEvent (juce::StringRef name) override  { write ("mark " + juce::String (name)); }

    std::vector<std::string> getCalls() const
    {
        const std::lock_guard<std::mutex> lock (mutex);
        return calls;
    }

    /** The system ids that thread names were given with, in order. */
    std::vector<uint32_t> getNamedThreadIds() const
    {
        const std::lock_guard<std::mutex> lock (mutex);
        return namedThreadIds;
    }

    using StackEventProfiler::isCurrentThreadRecorded;

protected:
    RecordedEvent makeEvent (juce::StringRef name, int category) override
    {
        write ("make " + juce::String (name) + " " + juce::String (category));
        return { name, category };
    }

    void eventFinished (RecordedEvent& event) override
    {
        write ("finished " + event.name + " at " + juce::String ((int) getCurrentThreadStackDepth()));
    }

    void setThreadName (const juce::String& name, uint32_t threadId) override
    {
        write ("thread " + name);
        const std::lock_guard<std::mutex> lock (mutex);
        namedThreadIds.push_back (threadId);
    }

    bool recordsAllThreads() const override         { return allThreads; }

private:
    bool allThreads;
    mutable std::mutex mutex;
    std::vector<std::string> calls;
    std::vector<uint32_t> namedThreadIds;

    void write (const juce::String& call)
    {
        const std::lock_guard<std::mutex> lock (mutex);
        calls.push_back (call.toStdString());
    }
};

/** A new profiler, held by a reference of its own and installed for the lifetime of this
    object; removed again at the end if it is still the installed one. */
template <class ProfilerType>
class InstalledProfiler
{
public:
    template <class... Arguments>
    explicit InstalledProfiler (Arguments&&... arguments) : profiler (new ProfilerType (std::forward<Arguments> (arguments)...))
    {
        profiler->incrementReferenceCounter();
        Profiler::set (profiler);
    }

    ~InstalledProfiler()
    {
        if (Profiler::get() == profiler)
            Profiler::set (nullptr);
        profiler->decrementReferenceCounter();
    }

    ProfilerType* get() const noexcept              { return profiler; }
    ProfilerType* operator->() const noexcept       { return profiler; }
    ProfilerType& operator*() const noexcept        { return *profiler; }

private:
    ProfilerType* profiler;

    JUCE_DECLARE_NON_COPYABLE (InstalledProfiler)
};

/** Runs the function on a juce::Thread of that name and waits for its end. */
inline void runOnJuceThread (const juce::String& name, std::function<void()> function)
{
    struct FunctionThread : juce::Thread
    {
        FunctionThread (const juce::String& name, std::function<void()> function) : Thread (name), function (std::move (function)) {}
        void run() override   { function(); }
        std::function<void()> function;
    } thread (name, std::move (function));
    thread.startThread();
    thread.waitForThreadToExit (-1);
}

/** Runs the function on a std::thread, which has no juce::Thread, and waits for its end. */
inline void runOnPlainThread (std::function<void()> function)
{
    std::thread thread (std::move (function));
    thread.join();
}

/** The thread id that the profiler compares with its rendering and user interface ids. */
inline void* getCurrentJuceThreadId()                   { return (void*) juce::Thread::getCurrentThreadId(); }

} // namespace tov::test
