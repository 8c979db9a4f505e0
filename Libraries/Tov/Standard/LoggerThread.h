#pragma once

#include <juce_core/juce_core.h>
#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace tov
{

/** The one thread that writes log files.

    Reporting threads only append entries to a queue and wake this thread;
    it takes the whole queue at once and does all file access, so that disk
    latency never reaches the code that reports. The queue lock is held for
    an append or a swap, never during file access, and no lock is taken
    under it.
*/
class LoggerThread : public juce::Thread
{
public:
    enum Command
    {
        printCommand = 0,
        flushCommand = 1,
        closeCommand = 2
    };

    /** Streams buffer this many bytes before they reach the system. */
    static constexpr size_t streamBufferSize = 32768;

    LoggerThread();
    ~LoggerThread() override;

    /** Queues a command for file, and wakes the thread. The text is written by printCommand only. */
    void enqueue (const juce::File& file, Command command, const juce::String& text = {});

    /** Deletes file unless this thread holds it open; false, touching nothing, when it does.
        Safe from any thread: no file can be opened here between the check and the deletion. */
    bool deleteFileUnlessOpen (const juce::File& file);

    /** Waits until every entry queued so far has been handled; false on time-out. */
    bool waitUntilDrained (int timeOutMilliseconds);

    /** Handles everything queued so far; true when there was anything. The thread's own step:
        call it yourself only on a logger that was never started. */
    bool drain();

    void run() override;

private:
    struct Entry
    {
        juce::File file;
        int command;
        juce::String text;
    };

    juce::CriticalSection queueLock;
    std::vector<Entry> queue;
    uint64_t numQueuedEntries = 0;               // guarded by queueLock
    std::atomic<uint64_t> numHandledEntries { 0 };
    juce::WaitableEvent drainedEvent;

    // Written by this thread only; the lock lets deleteFileUnlessOpen see a
    // consistent map and keeps a file from being opened while it is deleted.
    juce::CriticalSection streamsLock;
    std::map<juce::File, std::unique_ptr<juce::OutputStream>> streams;

    void handle (const Entry& entry);
    juce::OutputStream* findOrOpenStream (const juce::File& file);
    void closeStream (const juce::File& file);
    void closeAllStreams();

    JUCE_DECLARE_NON_COPYABLE (LoggerThread)
};

} // namespace tov
