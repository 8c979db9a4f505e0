#pragma once

#include "StackEventProfiler.h"
#include "Trace/TraceWriter.h"
#include "UnrealEvent.h"

namespace tov
{

/** Sends scopes, marks, frames, counters and thread names as a trace stream in the format of
    Unreal Insights (see TraceWriter): to a new ".utrace" file in the program's traces
    directory, or to a trace server listening on port 1981 of an address.

    The file is named program name + " " + branch name + " Trace " + the program's start time +
    ".utrace"; before it is made, the oldest traces of the directory are removed so that four
    remain. When the file or the connection cannot be made, the profiler stays installed and
    writes nothing: its channels stay disabled.

    Each scope writes the description of its name anew ("EventSpec", with a new id), then enters the
    scope in its thread's batch; so the stream grows with every scope, not only with new names.
*/
class UnrealProfiler : public StackEventProfiler<UnrealEvent>
{
public:
    TOV_DECLARE_CLASS (UnrealProfiler, Profiler)

    /** To a file. */
    UnrealProfiler();
    /** To a file, or to the socket at the address. */
    UnrealProfiler (bool toFile, const juce::String& address);
    /** To this file, with these options of the writer. */
    UnrealProfiler (const TraceWriterOptions& options, const juce::File& file);
    /** To the port of this host, with these options of the writer. */
    UnrealProfiler (const TraceWriterOptions& options, const juce::String& host, uint16_t port);
    /** Writes the calling thread's last scopes, and closes the stream. */
    ~UnrealProfiler() override;

    void beginFrame() override;
    void endFrame() override;
    void markEvent (juce::StringRef name) override;
    uint16_t registerCounterInt (const juce::String& name) override;
    uint16_t registerCounterDouble (const juce::String& name) override;
    void setCounterInt (uint16_t counter, int64_t value) override;
    void setCounterDouble (uint16_t counter, double value) override;

    /** Writes the calling thread's gathered scopes now rather than when its batch is full. */
    void flushScopes()                                  { writer.flushScopes(); }
    TraceWriter& getWriter() noexcept                   { return writer; }

    /** The oldest ".utrace" files of the directory go until at most that many remain. */
    static void removeOldTraces (const juce::File& directory, int numToKeep);
    /** Where the program's trace goes in file mode. */
    static juce::File getTraceFile();

    static constexpr int numOldTracesKept = 4;
    static constexpr int longestName = 1023;

protected:
    UnrealEvent makeEvent (juce::StringRef name, int category) override;
    void eventFinished (UnrealEvent& event) override;
    void setThreadName (const juce::String& name, uint32_t threadId) override;
    bool recordsAllThreads() const override             { return true; }

private:
    TraceWriter writer;
    std::atomic<uint16_t> nextCounterId { 0 };

    static TraceWriterOptions getDefaultOptions();
    /** With the stream open, the four channels are enabled. */
    void enableChannels (bool streamOpened);
    bool openTraceFile();
    uint32_t writeSpec (juce::StringRef name);
    uint16_t registerCounter (const juce::String& name, uint8_t type);
    void setCounter (TraceEventKind kind, uint16_t counter, const uint8_t* value);
};

} // namespace tov
