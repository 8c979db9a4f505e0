#include "Profiler.h"
#include "../Service.h"
#include <unistd.h>

namespace tov
{

TOV_BEGIN_CLASS (Profiler)
TOV_END_CLASS()

std::atomic<Profiler*> Profiler::current { nullptr };
std::atomic<bool> Profiler::userInterfaceThreadNamed { false };

static std::atomic<uint64_t> lastSerial { 0 };

Profiler::Profiler() noexcept
    : renderingThreadId (Service::getInvalidThreadId()),
      userInterfaceThreadId (Service::getInvalidThreadId()),
      serial (++lastSerial)
{
}

void Profiler::set (Profiler* profiler)
{
    auto* previous = current.load();
    if (profiler == previous)
        return;
    if (profiler != nullptr)
        profiler->incrementReferenceCounter();
    current.store (profiler, std::memory_order_release);
    if (previous != nullptr)
        previous->decrementReferenceCounter();
}

bool Profiler::isRenderingThreadCurrent() const noexcept
{
    return getRenderingThreadId() == (void*) juce::Thread::getCurrentThreadId();
}

bool Profiler::isUserInterfaceThreadCurrent() const noexcept
{
    return getUserInterfaceThreadId() == (void*) juce::Thread::getCurrentThreadId();
}

// Asked at every event of the user interface thread: the exchange only until it is named.
bool Profiler::claimUserInterfaceThreadNaming() noexcept
{
    return ! userInterfaceThreadNamed.load (std::memory_order_relaxed) && ! userInterfaceThreadNamed.exchange (true);
}

// gettid is a system call each time: each thread asks once.
uint32_t Profiler::getCurrentSystemThreadId() noexcept
{
    thread_local const uint32_t threadId = (uint32_t) ::gettid();
    return threadId;
}

juce::String Profiler::getCurrentThreadName()
{
    if (auto* thread = juce::Thread::getCurrentThread())
        return thread->getThreadName();
    return juce::String ((juce::uint64) getCurrentSystemThreadId());
}

} // namespace tov
