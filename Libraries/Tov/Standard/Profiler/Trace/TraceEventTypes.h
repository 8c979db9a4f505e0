#pragma once

#include <cstdint>
#include <vector>

namespace tov
{

/** The event types that the trace stream writes: each a static description that the stream
    carries before the type is first used (see TraceWriter).

    Type codes of fields: 0x00 to 0x03 unsigned integers of 1, 2, 4 and 8 bytes, 0x10 added for
    signed ones, 0x40 added for floating point; 0x80 an array of bytes and 0x88 a text, both
    carried as auxiliary data after the event's fixed part.
*/
enum class TraceEventKind : uint8_t
{
    newTrace, threadTiming, threadInfo, threadGroupBegin, threadGroupEnd,
    channelAnnounce, channelToggle,
    eventSpec, eventBatch,
    beginFrame, endFrame,
    counterSpec, counterSetValueInt, counterSetValueFloat
};

constexpr int numTraceEventKinds = 14;

struct TraceField
{
    const char* name;
    uint16_t offset;
    uint16_t size;
    uint8_t typeCode;
};

struct TraceEventType
{
    /** Flags of a type. */
    enum : uint8_t { important = 1, hasAuxiliaryData = 2, noSync = 4 };

    const char* logger;
    const char* name;
    uint8_t flags;
    uint16_t fixedSize;
    std::vector<TraceField> fields;

    bool hasAuxiliary() const noexcept          { return (flags & hasAuxiliaryData) != 0; }
    bool isNoSync() const noexcept              { return (flags & noSync) != 0; }

    static const TraceEventType& get (TraceEventKind kind) noexcept;

    /** The record that describes the type on the stream of thread id 0, with its uid. */
    void appendDescription (std::vector<uint8_t>& out, uint16_t uid) const;
};

/** Uids below this are reserved: 0 a new event type, 1 auxiliary data, 3 the end of auxiliary data. */
constexpr uint16_t firstTraceEventUid = 16;
constexpr uint16_t lastTraceEventUid = 32767;
constexpr uint8_t traceAuxiliaryUid = 1;
constexpr uint8_t traceAuxiliaryEndUid = 3;

/** A uid as events in thread buffers carry it: twice the uid, bit 0 set from 128 on. */
inline uint16_t getStoredTraceUid (uint16_t uid) noexcept
{
    return (uint16_t) (uid * 2 + (uid >= 128 ? 1 : 0));
}

} // namespace tov
