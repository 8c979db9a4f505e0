// libFuzzer target for tov-trace's reader of trace streams, which arrive from files and sockets.
//
// Each input is read as a whole stream, then reported as a dump and as a summary. A damaged
// stream must be refused with a reason, never crash; a stream that reads whole reads the same
// again. A failed property traps, so the fuzzer reports it.
#include <TraceReader/TraceReport.h>
#include <TraceReader/TraceStreamReader.h>
#include <cstddef>
#include <cstdint>

using namespace tov;

namespace
{
    void check (bool condition)
    {
        if (! condition)
            __builtin_trap();
    }
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    TraceStreamReader reader;
    const bool whole = reader.read (data, size);
    check (whole == reader.getError().empty());

    const TraceReport report (reader);
    const auto dump = report.getDump();
    const auto summary = report.getSummary();
    check (! summary.empty());

    if (whole)
    {
        TraceStreamReader again;
        check (again.read (data, size));
        check (TraceReport (again).getDump() == dump);
    }
    return 0;
}
