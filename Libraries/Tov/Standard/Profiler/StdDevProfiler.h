#pragma once

#include "../MillisecondClock.h"
#include "StackEventProfiler.h"
#include "StdDevEvent.h"
#include <atomic>
#include <map>

namespace tov
{

/** Statistics of when scopes begin and end, and marks happen, within their frame: for each
    thread and label (name + " (Begin)", name + " (End)", or the mark's name) the mean and the
    standard deviation of the time since the frame began, over the last 100 occurrences.

    On frames whose number is a multiple of 100 each occurrence prints its line to the debug
    output (see StdDevEvent::getReportLine). Every thread is recorded; the statistics are kept
    under a lock, the frame's start and number are atomics that the rendering thread writes.

    An open scope is held on its thread's stack as the statistics of its Begin label, which
    know its name: a scope allocates nothing but the first time its label is seen.
*/
class StdDevProfiler : public StackEventProfiler<StdDevEvent*>
{
public:
    TOV_DECLARE_CLASS (StdDevProfiler, Profiler)

    /** Times are read from the clock (in milliseconds). */
    explicit StdDevProfiler (MillisecondClock clock = systemMillisecondClock) noexcept : clock (clock) {}

    /** Notes the start of the frame and counts it. */
    void beginFrame() override;
    void endFrame() override                            {}
    void markEvent (juce::StringRef name) override;

    uint64_t getFrameCount() const noexcept             { return frameCount.load(); }

    enum class LabelKind { begin, end, mark };
    /** The statistics of the label of the calling thread; null while it has not happened. */
    const StdDevEvent* findEvent (juce::StringRef name, LabelKind kind) const;

protected:
    StdDevEvent* makeEvent (juce::StringRef name, int category) override;
    void eventFinished (StdDevEvent*& event) override;
    bool recordsAllThreads() const override             { return true; }

private:
    /** A label of a thread, as the name and the kind that make it. */
    template <class Text>
    struct Key
    {
        uint32_t threadId;
        LabelKind kind;
        Text name;
    };
    using StoredKey = Key<juce::String>;
    using LookUpKey = Key<juce::StringRef>;

    /** Orders stored keys and keys made for a look-up alike, so that a look-up builds no string. */
    struct KeyOrder
    {
        using is_transparent = void;
        template <class A, class B>
        bool operator() (const Key<A>& a, const Key<B>& b) const noexcept
        {
            if (a.threadId != b.threadId)
                return a.threadId < b.threadId;
            if (a.kind != b.kind)
                return a.kind < b.kind;
            return juce::CharacterFunctions::compare (getText (a.name), getText (b.name)) < 0;
        }
        static juce::CharPointer_UTF8 getText (const juce::String& text) noexcept   { return text.getCharPointer(); }
        static juce::CharPointer_UTF8 getText (juce::StringRef text) noexcept       { return text.text; }
    };

    MillisecondClock clock;
    std::atomic<double> frameTime { -1.0 };
    std::atomic<uint64_t> frameCount { 0 };
    mutable juce::CriticalSection eventsLock;
    std::map<StoredKey, StdDevEvent, KeyOrder> events;

    /** Counts an occurrence of the label on the calling thread, and prints its line when due. */
    StdDevEvent* record (juce::StringRef name, LabelKind kind);
    static juce::String makeLabel (juce::StringRef name, LabelKind kind);
};

} // namespace tov
