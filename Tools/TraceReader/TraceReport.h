#pragma once

#include "TraceStreamReader.h"
#include <map>
#include <string>
#include <vector>

namespace tov
{

/** What a trace stream holds, as text: every packet, type and event (getDump), or its threads,
    scopes by name with their total and mean times, counters and frames (getSummary).

    Scopes come from the batches of the "CpuProfiler" "EventBatch" events: variable-length
    integers, 7 bits a byte, low bits first; an odd value enters a scope (the cycles since the
    batch's last value, times 2, plus 1, then the id of its "EventSpec"), an even one leaves the innermost.
    The names are those of the "EventSpec" events; times are cycles over the "CycleFrequency"
    of "NewTrace".
*/
class TraceReport
{
public:
    explicit TraceReport (const TraceStreamReader& reader);

    std::string getDump() const;
    std::string getSummary() const;

    struct Scope
    {
        uint16_t threadId;
        uint32_t specId;
        uint64_t begin, end;
        size_t depth;
    };

    const std::vector<Scope>& getScopes() const noexcept            { return scopes; }
    std::string getSpecName (uint32_t specId) const;

private:
    struct Thread
    {
        std::string name;
        uint32_t systemId = 0;
        int32_t sortHint = 0;
        size_t numEvents = 0, numScopes = 0;
    };

    struct Counter
    {
        std::string name;
        uint8_t type = 0;
        size_t numValues = 0;
        std::string lastValue;
    };

    const TraceStreamReader& reader;
    uint64_t cycleFrequency = 1000000000;
    std::map<uint32_t, std::string> specNames;
    std::map<uint16_t, Thread> threads;
    std::map<uint16_t, Counter> counters;
    std::vector<Scope> scopes;
    // numOpenScopes: enters that no leave matched, summed over the threads.
    size_t numOpenScopes = 0, numBeginFrames = 0, numEndFrames = 0, numBatchErrors = 0;

    void readImportantEvents();
    void readThreadEvents();
    void readBatch (uint16_t threadId, const std::vector<uint8_t>& data, std::vector<std::pair<uint32_t, uint64_t>>& open);
    std::string describeEvent (const TraceStreamReader::Event& event) const;
    std::string formatMicroseconds (double cycles) const;
};

} // namespace tov
