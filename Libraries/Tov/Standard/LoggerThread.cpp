#include "LoggerThread.h"
#include "Deadline.h"
#include "ExceptionFilter.h"
#include <pthread.h>

namespace tov
{

LoggerThread::LoggerThread() : juce::Thread ("Logger")
{
}

// The streams belong to the running thread: it must be gone before they are closed here.
LoggerThread::~LoggerThread()
{
    stopThread (-1);
    closeAllStreams();
}

//==============================================================================
void LoggerThread::enqueue (const juce::File& file, Command command, const juce::String& text)
{
    {
        const juce::ScopedLock lock (queueLock);
        queue.push_back ({ file, (int) command, text });
        ++numQueuedEntries;
    }
    notify();
}

bool LoggerThread::waitUntilDrained (int timeOutMilliseconds)
{
    const Deadline deadline (timeOutMilliseconds);
    for (;;)
    {
        uint64_t target;
        {
            const juce::ScopedLock lock (queueLock);
            target = numQueuedEntries;
        }
        if (numHandledEntries.load() >= target)
            return true;

        const int remaining = deadline.getRemainingMilliseconds();
        if (remaining == 0)
            return false;
        drainedEvent.wait (juce::jmin (remaining, 100));
    }
}

//==============================================================================
bool LoggerThread::drain()
{
    std::vector<Entry> entries;
    {
        const juce::ScopedLock lock (queueLock);
        entries.swap (queue);
    }

    for (const auto& entry : entries)
        handle (entry);

    if (entries.empty())
        return false;

    numHandledEntries += entries.size();
    drainedEvent.signal();
    return true;
}

void LoggerThread::handle (const Entry& entry)
{
    auto* stream = findOrOpenStream (entry.file);
    if (stream == nullptr)
        return;

    switch (entry.command)
    {
        case printCommand:  *stream << entry.text; break;
        case flushCommand:  stream->flush(); break;
        case closeCommand:  closeStream (entry.file); break;
        default:            break;
    }
}

// A file that cannot be opened keeps its null stream in the map, so that it
// is not tried again for every line: its lines are lost, silently.
juce::OutputStream* LoggerThread::findOrOpenStream (const juce::File& file)
{
    auto position = streams.find (file);
    if (position != streams.end())
        return position->second.get();

    const juce::ScopedLock lock (streamsLock);
    auto& stream = streams[file];
    stream = file.createOutputStream (streamBufferSize);
    return stream.get();
}

void LoggerThread::closeStream (const juce::File& file)
{
    auto position = streams.find (file);
    if (position == streams.end())
        return;

    if (position->second != nullptr)
        position->second->flush();

    const juce::ScopedLock lock (streamsLock);
    streams.erase (position);
}

void LoggerThread::closeAllStreams()
{
    const juce::ScopedLock lock (streamsLock);
    for (auto& [file, stream] : streams)
        if (stream != nullptr)
            stream->flush();
    streams.clear();
}

bool LoggerThread::deleteFileUnlessOpen (const juce::File& file)
{
    const juce::ScopedLock lock (streamsLock);
    if (streams.find (file) != streams.end())
        return false;
    file.deleteFile();
    return true;
}

//==============================================================================
void LoggerThread::run()
{
    // A stop that times out must not cancel this thread in the middle of a
    // write: the forced unwind would end the process.
    pthread_setcancelstate (PTHREAD_CANCEL_DISABLE, nullptr);
    const ExceptionFilter::ThreadScope crashScope;

    while (! threadShouldExit())
        if (! drain())
            wait (1000);

    // What is still queued now is not written.
    closeAllStreams();
}

} // namespace tov
