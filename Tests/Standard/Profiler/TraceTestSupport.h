#pragma once

#include "Support/ScratchDirectory.h"
#include <Tov/Standard/Profiler/Trace/TraceWriter.h>
#include <TraceReader/TraceListener.h>
#include <TraceReader/TraceReport.h>
#include <TraceReader/TraceStreamReader.h>
#include <juce_core/juce_core.h>
#include <string>
#include <vector>

namespace tov::test
{

/** A clock of its own for each thread: each read is 10 cycles after the thread's last one, so
    that a thread's scopes last exactly what the test says whatever the other threads do. */
inline thread_local uint64_t testCycle = 0;

inline uint64_t readTestClock() noexcept
{
    return testCycle += 10;
}

/** A writer's options with the test clock, and with or without the worker. */
inline TraceWriterOptions makeTestOptions (bool workerThread)
{
    testCycle = 0;
    TraceWriterOptions options;
    options.clock = readTestClock;
    options.workerThread = workerThread;
    return options;
}

inline std::vector<uint8_t> readStream (const juce::File& file)
{
    juce::MemoryBlock block;
    file.loadFileAsData (block);
    const auto* bytes = static_cast<const uint8_t*> (block.getData());
    return { bytes, bytes + block.getSize() };
}

/** A trace file in a scratch directory of the test's own, removed with it. */
struct TemporaryTrace
{
    ScratchDirectory folder;
    const juce::File file = folder.getChildFile ("test.utrace");

    std::vector<uint8_t> read() const   { return readStream (file); }
};

/** What tov-trace prints for the stream; "error: " and the reason after it when it is damaged. */
inline std::string reportOf (const std::vector<uint8_t>& stream, bool dump)
{
    TraceStreamReader reader;
    const bool whole = reader.read (stream.data(), stream.size());
    const TraceReport report (reader);
    return (dump ? report.getDump() : report.getSummary()) + (whole ? "" : "error: " + reader.getError() + "\n");
}

inline std::string summaryOf (const std::vector<uint8_t>& stream)  { return reportOf (stream, false); }
inline std::string dumpOf (const std::vector<uint8_t>& stream)     { return reportOf (stream, true); }

/** The lines of the text that start with the prefix, in order. */
inline std::vector<std::string> linesStartingWith (const std::string& text, const std::string& prefix)
{
    std::vector<std::string> lines;
    size_t start = 0;
    while (start < text.size())
    {
        const size_t end = text.find ('\n', start);
        const auto line = text.substr (start, end == std::string::npos ? std::string::npos : end - start);
        if (line.rfind (prefix, 0) == 0)
            lines.push_back (line);
        if (end == std::string::npos)
            break;
        start = end + 1;
    }
    return lines;
}

} // namespace tov::test
