#include "TraceEventTypes.h"
#include "TraceBytes.h"
#include <array>
#include <cstring>

namespace tov
{

namespace
{
constexpr uint8_t u8 = 0x00, u16 = 0x01, u32 = 0x02, u64 = 0x03, i32 = 0x12, i64 = 0x13, f64 = 0x43, bytes = 0x80, text = 0x88;
constexpr uint8_t important = TraceEventType::important, aux = TraceEventType::hasAuxiliaryData, noSync = TraceEventType::noSync;

// In the order of TraceEventKind.
const std::array<TraceEventType, numTraceEventKinds> types {{
    { "$Trace", "NewTrace", important | noSync, 19,
      { { "StartCycle", 0, 8, u64 }, { "CycleFrequency", 8, 8, u64 }, { "Endian", 16, 2, u16 }, { "PointerSize", 18, 1, u8 } } },
    { "$Trace", "ThreadTiming", noSync, 8, { { "BaseTimestamp", 0, 8, u64 } } },
    { "$Trace", "ThreadInfo", important | aux | noSync, 12,
      { { "ThreadId", 0, 4, u32 }, { "SystemId", 4, 4, u32 }, { "SortHint", 8, 4, i32 }, { "Name", 12, 0, text } } },
    { "$Trace", "ThreadGroupBegin", important | aux | noSync, 0, { { "Name", 0, 0, text } } },
    { "$Trace", "ThreadGroupEnd", important | noSync, 0, {} },
    { "Trace", "ChannelAnnounce", important | aux | noSync, 6,
      { { "Id", 0, 4, u32 }, { "IsEnabled", 4, 1, u8 }, { "ReadOnly", 5, 1, u8 }, { "Name", 6, 0, text } } },
    { "Trace", "ChannelToggle", important | noSync, 5, { { "Id", 0, 4, u32 }, { "IsEnabled", 4, 1, u8 } } },
    { "CpuProfiler", "EventSpec", important | aux | noSync, 4, { { "Id", 0, 4, u32 }, { "Name", 4, 0, text } } },
    { "CpuProfiler", "EventBatch", aux | noSync, 0, { { "Data", 0, 0, bytes } } },
    { "Misc", "BeginFrame", 0, 9, { { "Cycle", 0, 8, u64 }, { "FrameType", 8, 1, u8 } } },
    { "Misc", "EndFrame", 0, 9, { { "Cycle", 0, 8, u64 }, { "FrameType", 8, 1, u8 } } },
    { "Counters", "Spec", important | aux | noSync, 4,
      { { "Id", 0, 2, u16 }, { "Type", 2, 1, u8 }, { "DisplayHint", 3, 1, u8 }, { "Name", 4, 0, text } } },
    { "Counters", "SetValueInt", 0, 18, { { "Cycle", 0, 8, u64 }, { "Value", 8, 8, i64 }, { "CounterId", 16, 2, u16 } } },
    { "Counters", "SetValueFloat", 0, 18, { { "Cycle", 0, 8, u64 }, { "Value", 8, 8, f64 }, { "CounterId", 16, 2, u16 } } },
}};
} // namespace

const TraceEventType& TraceEventType::get (TraceEventKind kind) noexcept
{
    return types[(size_t) kind];
}

// uid 0, record size, uid, number of fields, flags, name lengths, then 8 bytes per field
// (kind 0 "plain", a reserved byte, offset, size, type code, name length), then the names.
void TraceEventType::appendDescription (std::vector<uint8_t>& out, uint16_t uid) const
{
    size_t namesSize = std::strlen (logger) + std::strlen (name);
    for (const auto& field : fields)
        namesSize += std::strlen (field.name);

    appendLittleEndian<uint16_t> (out, 0);
    appendLittleEndian<uint16_t> (out, (uint16_t) (6 + 8 * fields.size() + namesSize));
    appendLittleEndian<uint16_t> (out, uid);
    out.push_back ((uint8_t) fields.size());
    out.push_back (flags);
    out.push_back ((uint8_t) std::strlen (logger));
    out.push_back ((uint8_t) std::strlen (name));
    for (const auto& field : fields)
    {
        out.push_back (0);
        out.push_back (0);
        appendLittleEndian<uint16_t> (out, field.offset);
        appendLittleEndian<uint16_t> (out, field.size);
        out.push_back (field.typeCode);
        out.push_back ((uint8_t) std::strlen (field.name));
    }
    appendText (out, logger);
    appendText (out, name);
    for (const auto& field : fields)
        appendText (out, field.name);
}

} // namespace tov
