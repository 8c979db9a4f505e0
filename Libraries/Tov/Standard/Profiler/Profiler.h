#pragma once

#include "../../Core/Object.h"
#include <atomic>
#include <cstdint>

namespace tov
{

/** What listens to the scopes and frames that code marks: one back-end, installed for the
    whole process, or none.

    Code marks named scopes with ProfilerScope, and the rendering thread calls beginFrame and
    endFrame around each frame; none of it knows what listens. With no profiler installed a
    scope costs one pointer comparison. The program installs the profiler that its command
    line names (see ProfilerCommandLine) and removes it when it stops.

    The profiler is reached from every thread without a lock: it is set while no other thread
    profiles, at the start and at the end of the program.
*/
class Profiler : public Object
{
public:
    TOV_DECLARE_CLASS (Profiler, Object)

    Profiler() noexcept;

    /** The installed profiler; null for none. */
    static Profiler* get() noexcept                     { return current.load (std::memory_order_acquire); }
    /** Installs the profiler, holding a reference on it, and releases the one it replaces, which
        deletes it unless somebody else holds it. Setting the installed one again changes nothing. */
    static void set (Profiler* profiler);

    //==============================================================================
    virtual void beginFrame() = 0;
    virtual void endFrame() = 0;
    virtual void beginEvent (juce::StringRef name, int category) = 0;
    virtual void endEvent() = 0;
    virtual void markEvent (juce::StringRef name) = 0;
    virtual void setCategoryName (int category, juce::StringRef name) {}
    /** The counter's identifier; the base keeps no counters and answers 0. */
    virtual uint16_t registerCounterInt (const juce::String& name)      { return 0; }
    virtual uint16_t registerCounterDouble (const juce::String& name)   { return 0; }
    virtual void setCounterInt (uint16_t counter, int64_t value)        {}
    virtual void setCounterDouble (uint16_t counter, double value)      {}

    //==============================================================================
    /** The application names its rendering and user interface threads when it knows them;
        until then neither is known (Service::getInvalidThreadId). */
    void setRenderingThreadId (void* threadId) noexcept         { renderingThreadId.store (threadId, std::memory_order_relaxed); }
    void setUserInterfaceThreadId (void* threadId) noexcept     { userInterfaceThreadId.store (threadId, std::memory_order_relaxed); }
    void* getRenderingThreadId() const noexcept                 { return renderingThreadId.load (std::memory_order_relaxed); }
    void* getUserInterfaceThreadId() const noexcept             { return userInterfaceThreadId.load (std::memory_order_relaxed); }
    bool isRenderingThreadCurrent() const noexcept;
    bool isUserInterfaceThreadCurrent() const noexcept;

    /** The classes of threads that profilers tell apart; the rendering thread comes first when
        it is also the user interface thread. */
    enum class ThreadClass { rendering, userInterface, other };
    ThreadClass getCurrentThreadClass() const noexcept
    {
        const auto current = (void*) juce::Thread::getCurrentThreadId();
        if (current == getRenderingThreadId())
            return ThreadClass::rendering;
        if (current == getUserInterfaceThreadId())
            return ThreadClass::userInterface;
        return ThreadClass::other;
    }

    /** The system's id of the calling thread (gettid), by which back-ends name threads. */
    static uint32_t getCurrentSystemThreadId() noexcept;
    /** The name of the calling thread's juce::Thread, or its system id without one. */
    static juce::String getCurrentThreadName();

protected:
    /** True for the first caller in the process only: the user interface thread is named once. */
    static bool claimUserInterfaceThreadNaming() noexcept;

    /** What find gives for the calling thread and this profiler: find runs once per thread (and
        call site), and the thread keeps the answer for as long as it asks this profiler. */
    template <class Value, class Find>
    Value& findOncePerThread (Find&& find) const
    {
        struct Found
        {
            uint64_t profilerSerial = 0;
            Value* value = nullptr;
        };
        // Initial-exec: a load at a fixed offset from the thread pointer, where the general
        // model of a shared library calls __tls_get_addr at every event.
        thread_local Found found __attribute__ ((tls_model ("initial-exec")));
        if (found.profilerSerial != serial)
            found = { serial, &find() };
        return *found.value;
    }

private:
    static std::atomic<Profiler*> current;
    static std::atomic<bool> userInterfaceThreadNamed;

    std::atomic<void*> renderingThreadId;
    std::atomic<void*> userInterfaceThreadId;
    /** A number of this profiler alone, never given to another one in the process, even at the
        same address: what a thread keeps of a profiler is checked against it. */
    const uint64_t serial;
};

} // namespace tov
