#pragma once

#include <atomic>
#include <cstdint>
#include <juce_core/juce_core.h>

namespace tov
{

/** A named switch of a group of trace events: an event of a disabled channel is not written.
    Its id on the stream is the hash of its name (getHash). */
class TraceChannel
{
public:
    explicit TraceChannel (const char* name) noexcept : name (name), hash (getHash (name)) {}

    const char* getName() const noexcept        { return name; }
    uint32_t getId() const noexcept             { return hash; }
    bool isEnabled() const noexcept             { return enabled.load (std::memory_order_relaxed); }
    /** True when the state changed. */
    bool setEnabled (bool shouldBeEnabled) noexcept     { return enabled.exchange (shouldBeEnabled) != shouldBeEnabled; }

    /** FNV-1a of the name in lower case, without a final "Channel" and then a final "s". */
    static uint32_t getHash (juce::StringRef name) noexcept;

private:
    const char* name;
    uint32_t hash;
    std::atomic<bool> enabled { false };
};

} // namespace tov
