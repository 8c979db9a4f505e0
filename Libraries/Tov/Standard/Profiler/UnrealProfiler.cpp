#include "UnrealProfiler.h"
#include "Trace/TraceBytes.h"
#include "Trace/TraceTransport.h"
#include "../Program.h"
#include "../TimeText.h"
#include <algorithm>

namespace tov
{

TOV_BEGIN_CLASS (UnrealProfiler)
TOV_END_CLASS()

TraceWriterOptions UnrealProfiler::getDefaultOptions()
{
    TraceWriterOptions options;
    options.tailSize = 0x400000;
    options.workerThread = true;
    options.importantCache = true;
    return options;
}

UnrealProfiler::UnrealProfiler()
    : UnrealProfiler (true, "127.0.0.1")
{
}

UnrealProfiler::UnrealProfiler (bool toFile, const juce::String& addressToUse)
    : writer (getDefaultOptions())
{
    address = addressToUse;
    enableChannels (toFile ? openTraceFile() : writer.getTransport().connect (address, TraceTransport::defaultPort));
}

UnrealProfiler::UnrealProfiler (const TraceWriterOptions& options, const juce::File& file)
    : writer (options)
{
    enableChannels (writer.getTransport().openFile (file));
}

UnrealProfiler::UnrealProfiler (const TraceWriterOptions& options, const juce::String& host, uint16_t port)
    : writer (options)
{
    address = host;
    enableChannels (writer.getTransport().connect (host, port));
}

UnrealProfiler::~UnrealProfiler()
{
    writer.flushScopes();
}

void UnrealProfiler::enableChannels (bool streamOpened)
{
    if (! streamOpened)
        return;
    for (auto channel : { TraceWriter::Channel::cpu, TraceWriter::Channel::gpu, TraceWriter::Channel::frame, TraceWriter::Channel::counters })
        writer.setChannelEnabled (channel, true);
}

//==============================================================================
bool UnrealProfiler::openTraceFile()
{
    if (! Program::isStillRunning())
        return false;
    removeOldTraces (Program::get().getTracesDirectory (true), numOldTracesKept);
    return writer.getTransport().openFile (getTraceFile());
}

juce::File UnrealProfiler::getTraceFile()
{
    const auto& program = Program::get();
    return program.getTracesDirectory (true).getChildFile (program.getProgramName() + " " + program.getSoftwareVersion().getBranchName().get()
                                                           + " Trace " + TimeText::toFileNameString (program.getStartTime()) + ".utrace");
}

void UnrealProfiler::removeOldTraces (const juce::File& directory, int numToKeep)
{
    auto traces = directory.findChildFiles (juce::File::findFiles, false, "*.utrace");
    std::stable_sort (traces.begin(), traces.end(), [] (const juce::File& a, const juce::File& b)
                      { return a.getLastModificationTime() < b.getLastModificationTime(); });
    for (int i = 0; i < traces.size() - numToKeep; ++i)
        traces.getReference (i).deleteFile();
}

//==============================================================================
uint32_t UnrealProfiler::writeSpec (juce::StringRef name)
{
    const uint32_t specId = writer.takeSpecId();
    uint8_t fixed[4];
    writeLittleEndian<uint32_t> (fixed, specId);
    const char* text = name.text.getAddress();
    size_t length = std::strlen (text);
    if (length > (size_t) longestName)
    {
        const auto cut = juce::String (name).substring (0, longestName);
        writer.writeImportantOfScopes (TraceEventKind::eventSpec, fixed, cut.toRawUTF8(), cut.getNumBytesAsUTF8());
    }
    else
    {
        writer.writeImportantOfScopes (TraceEventKind::eventSpec, fixed, text, length);
    }
    return specId;
}

UnrealEvent UnrealProfiler::makeEvent (juce::StringRef name, int)
{
    if (! writer.isChannelEnabled (TraceWriter::Channel::cpu))
        return 0;
    const uint32_t specId = writeSpec (name);
    writer.enterScope (specId, writer.getCycle());
    return specId;
}

void UnrealProfiler::eventFinished (UnrealEvent& event)
{
    if (event != 0)
        writer.leaveScope (writer.getCycle());
}

void UnrealProfiler::markEvent (juce::StringRef name)
{
    if (! isCurrentThreadRecorded() || ! writer.isChannelEnabled (TraceWriter::Channel::cpu))
        return;
    const uint32_t specId = writeSpec (name);
    const uint64_t cycle = writer.getCycle();
    writer.enterScope (specId, cycle);
    writer.leaveScope (cycle);
}

void UnrealProfiler::setThreadName (const juce::String& name, uint32_t threadId)
{
    writer.writeThreadInfo (name.substring (0, longestName), threadId, 0);
}

//==============================================================================
void UnrealProfiler::beginFrame()
{
    StackEventProfiler::beginFrame();
    if (! writer.hasWorkerThread())
        writer.tick();
    if (! writer.isChannelEnabled (TraceWriter::Channel::frame))
        return;
    uint8_t fixed[9];
    writeLittleEndian<uint64_t> (fixed, writer.getCycle());
    fixed[8] = 1;
    writer.writeToThread (TraceEventKind::beginFrame, fixed);
}

void UnrealProfiler::endFrame()
{
    if (! writer.isChannelEnabled (TraceWriter::Channel::frame))
        return;
    uint8_t fixed[9];
    writeLittleEndian<uint64_t> (fixed, writer.getCycle());
    fixed[8] = 1;
    writer.writeToThread (TraceEventKind::endFrame, fixed);
}

uint16_t UnrealProfiler::registerCounterInt (const juce::String& name)        { return registerCounter (name, 0); }
uint16_t UnrealProfiler::registerCounterDouble (const juce::String& name)     { return registerCounter (name, 1); }

uint16_t UnrealProfiler::registerCounter (const juce::String& name, uint8_t type)
{
    const uint16_t counter = nextCounterId.fetch_add (1);
    const auto cut = name.substring (0, longestName);
    if (writer.isChannelEnabled (TraceWriter::Channel::counters))
    {
        uint8_t fixed[4];
        writeLittleEndian<uint16_t> (fixed, counter);
        fixed[2] = type;
        fixed[3] = 0;
        writer.writeImportant (TraceEventKind::counterSpec, fixed, cut.toRawUTF8(), cut.getNumBytesAsUTF8());
    }
    return counter;
}

void UnrealProfiler::setCounterInt (uint16_t counter, int64_t value)
{
    uint8_t bytes[8];
    writeLittleEndian<int64_t> (bytes, value);
    setCounter (TraceEventKind::counterSetValueInt, counter, bytes);
}

void UnrealProfiler::setCounterDouble (uint16_t counter, double value)
{
    uint8_t bytes[8];
    uint64_t bits;
    std::memcpy (&bits, &value, sizeof (bits));
    writeLittleEndian<uint64_t> (bytes, bits);
    setCounter (TraceEventKind::counterSetValueFloat, counter, bytes);
}

// Cycle, value, counter id.
void UnrealProfiler::setCounter (TraceEventKind kind, uint16_t counter, const uint8_t* value)
{
    if (! writer.isChannelEnabled (TraceWriter::Channel::counters))
        return;
    uint8_t fixed[18];
    writeLittleEndian<uint64_t> (fixed, writer.getCycle());
    std::memcpy (fixed + 8, value, 8);
    writeLittleEndian<uint16_t> (fixed + 16, counter);
    writer.writeToThread (kind, fixed);
}

} // namespace tov
