#include "TraceReport.h"
#include <cstdio>
#include <sstream>

namespace tov
{

namespace
{
bool isType (const TraceStreamReader::EventType* type, const char* logger, const char* name)
{
    return type != nullptr && type->logger == logger && type->name == name;
}

std::string hex (uint64_t value, int digits)
{
    char text[32];
    std::snprintf (text, sizeof (text), "0x%0*llx", digits, (unsigned long long) value);
    return text;
}

std::string formatDouble (double value)
{
    std::ostringstream stream;
    stream.precision (17);
    stream << value;
    return stream.str();
}

/** False when the integer does not end within the data or takes more than 10 bytes. */
bool readVariable (const std::vector<uint8_t>& data, size_t& position, uint64_t& value)
{
    value = 0;
    for (unsigned shift = 0; shift < 70; shift += 7)
    {
        if (position >= data.size())
            return false;
        const uint8_t byte = data[position++];
        value |= (uint64_t) (byte & 0x7f) << shift;
        if ((byte & 0x80) == 0)
            return true;
    }
    return false;
}
} // namespace

TraceReport::TraceReport (const TraceStreamReader& reader)
    : reader (reader)
{
    readImportantEvents();
    readThreadEvents();
}

void TraceReport::readImportantEvents()
{
    for (const auto& event : reader.getImportantEvents())
    {
        const auto* type = reader.findType (event.uid);
        if (isType (type, "$Trace", "NewTrace") && reader.getUnsigned (event, "CycleFrequency") != 0)
            cycleFrequency = reader.getUnsigned (event, "CycleFrequency");
        else if (isType (type, "CpuProfiler", "EventSpec"))
            specNames[(uint32_t) reader.getUnsigned (event, "Id")] = reader.getText (event);
        else if (isType (type, "$Trace", "ThreadInfo"))
        {
            auto& thread = threads[(uint16_t) reader.getUnsigned (event, "ThreadId")];
            thread.name = reader.getText (event);
            thread.systemId = (uint32_t) reader.getUnsigned (event, "SystemId");
            thread.sortHint = (int32_t) reader.getSigned (event, "SortHint");
        }
        else if (isType (type, "Counters", "Spec"))
        {
            auto& counter = counters[(uint16_t) reader.getUnsigned (event, "Id")];
            counter.name = reader.getText (event);
            counter.type = (uint8_t) reader.getUnsigned (event, "Type");
        }
    }
}

void TraceReport::readThreadEvents()
{
    for (const auto& [threadId, events] : reader.getThreadEvents())
    {
        std::vector<std::pair<uint32_t, uint64_t>> open;
        threads[threadId].numEvents = events.size();
        for (const auto& event : events)
        {
            const auto* type = reader.findType (event.uid);
            if (isType (type, "CpuProfiler", "EventBatch"))
                readBatch (threadId, event.auxiliary, open);
            else if (isType (type, "Misc", "BeginFrame"))
                ++numBeginFrames;
            else if (isType (type, "Misc", "EndFrame"))
                ++numEndFrames;
            else if (isType (type, "Counters", "SetValueInt") || isType (type, "Counters", "SetValueFloat"))
            {
                auto& counter = counters[(uint16_t) reader.getUnsigned (event, "CounterId")];
                ++counter.numValues;
                counter.lastValue = type->name == "SetValueInt" ? std::to_string (reader.getSigned (event, "Value"))
                                                                : formatDouble (reader.getDouble (event, "Value"));
            }
        }
        numOpenScopes += open.size();
    }
}

// Each batch counts its cycles from 0; the open scopes of the thread carry over.
void TraceReport::readBatch (uint16_t threadId, const std::vector<uint8_t>& data, std::vector<std::pair<uint32_t, uint64_t>>& open)
{
    uint64_t cycle = 0;
    size_t position = 0;
    while (position < data.size())
    {
        uint64_t value = 0, specId = 0;
        if (! readVariable (data, position, value))
        {
            ++numBatchErrors;
            return;
        }
        cycle += value >> 1;
        if ((value & 1) != 0)
        {
            if (! readVariable (data, position, specId))
            {
                ++numBatchErrors;
                return;
            }
            open.emplace_back ((uint32_t) specId, cycle);
        }
        else if (! open.empty())
        {
            scopes.push_back ({ threadId, open.back().first, open.back().second, cycle, open.size() - 1 });
            open.pop_back();
            ++threads[threadId].numScopes;
        }
    }
}

std::string TraceReport::getSpecName (uint32_t specId) const
{
    const auto found = specNames.find (specId);
    return found != specNames.end() ? found->second : "?";
}

std::string TraceReport::formatMicroseconds (double cycles) const
{
    char text[64];
    std::snprintf (text, sizeof (text), "%.3fus", cycles * 1e6 / (double) cycleFrequency);
    return text;
}

//==============================================================================
std::string TraceReport::describeEvent (const TraceStreamReader::Event& event) const
{
    const auto* type = reader.findType (event.uid);
    std::string line = "uid=" + std::to_string (event.uid);
    if (event.serial >= 0)
        line += " serial=" + std::to_string (event.serial);
    if (type == nullptr)
        return line + " ?";
    line += " " + type->getFullName();
    for (const auto& field : type->fields)
    {
        line += " " + field.name + "=";
        if (field.typeCode == 0x88)
            line += "\"" + reader.getText (event) + "\"";
        else if (field.isAuxiliary())
            line += std::to_string (event.auxiliary.size()) + " bytes in " + std::to_string (event.numAuxiliaryPieces) + " pieces";
        else if ((field.typeCode & 0x40) != 0)
            line += formatDouble (reader.getDouble (event, field.name.c_str()));
        else if ((field.typeCode & 0x10) != 0)
            line += std::to_string (reader.getSigned (event, field.name.c_str()));
        else
            line += std::to_string (reader.getUnsigned (event, field.name.c_str()));
    }
    return line;
}

std::string TraceReport::getDump() const
{
    const auto& handshake = reader.getHandshake();
    std::string out = "handshake magic=" + hex (handshake.magic, 8) + " metadataSize=" + std::to_string (handshake.metadataSize)
                    + " metadataField=" + std::to_string (handshake.metadataField) + " controlPort=" + hex (handshake.controlPort, 4)
                    + " transportVersion=" + std::to_string (handshake.transportVersion)
                    + " protocolVersion=" + std::to_string (handshake.protocolVersion) + "\n";
    for (const auto& packet : reader.getPackets())
        out += "packet thread=" + std::to_string (packet.threadId) + " size=" + std::to_string (packet.size)
             + (packet.compressed ? " lz4" : "") + " payload=" + std::to_string (packet.payloadSize) + "\n";
    for (const auto& [uid, type] : reader.getTypes())
    {
        out += "type uid=" + std::to_string (uid) + " " + type.getFullName() + " flags=" + std::to_string (type.flags)
             + " fixed=" + std::to_string (type.fixedSize);
        for (const auto& field : type.fields)
            out += " " + field.name + "(" + std::to_string (field.offset) + "," + std::to_string (field.size) + "," + hex (field.typeCode, 2) + ")";
        out += "\n";
    }
    for (const auto& event : reader.getImportantEvents())
        out += "important " + describeEvent (event) + "\n";
    for (const auto& [threadId, events] : reader.getThreadEvents())
        for (const auto& event : events)
            out += "thread " + std::to_string (threadId) + " " + describeEvent (event) + "\n";
    for (const auto& scope : scopes)
        out += "scope thread=" + std::to_string (scope.threadId) + " depth=" + std::to_string (scope.depth) + " \"" + getSpecName (scope.specId)
             + "\" spec=" + std::to_string (scope.specId) + " begin=" + std::to_string (scope.begin) + " end=" + std::to_string (scope.end) + "\n";
    return out;
}

std::string TraceReport::getSummary() const
{
    std::string out = "threads " + std::to_string (threads.size()) + "\n";
    for (const auto& [threadId, thread] : threads)
        out += "  thread " + std::to_string (threadId) + " \"" + thread.name + "\" system=" + std::to_string (thread.systemId)
             + " sortHint=" + std::to_string (thread.sortHint) + " events=" + std::to_string (thread.numEvents)
             + " scopes=" + std::to_string (thread.numScopes) + "\n";

    struct Total { size_t count = 0; uint64_t cycles = 0; };
    std::map<std::string, Total> byName;
    for (const auto& scope : scopes)
    {
        auto& total = byName[getSpecName (scope.specId)];
        ++total.count;
        total.cycles += scope.end - scope.begin;
    }
    out += "scopes " + std::to_string (scopes.size()) + " open " + std::to_string (numOpenScopes) + "\n";
    for (const auto& [name, total] : byName)
        out += "  \"" + name + "\" count=" + std::to_string (total.count) + " total=" + formatMicroseconds ((double) total.cycles)
             + " mean=" + formatMicroseconds ((double) total.cycles / (double) total.count) + "\n";

    out += "counters " + std::to_string (counters.size()) + "\n";
    for (const auto& [id, counter] : counters)
        out += "  counter " + std::to_string (id) + " \"" + counter.name + "\" " + (counter.type == 0 ? "int" : "double")
             + " values=" + std::to_string (counter.numValues) + " last=" + (counter.numValues > 0 ? counter.lastValue : "none") + "\n";
    out += "frames begin=" + std::to_string (numBeginFrames) + " end=" + std::to_string (numEndFrames) + "\n";
    if (numBatchErrors > 0)
        out += "damaged batches " + std::to_string (numBatchErrors) + "\n";
    return out;
}

} // namespace tov
