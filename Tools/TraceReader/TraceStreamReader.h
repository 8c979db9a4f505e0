#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tov
{

/** Reads a trace stream in the format of Unreal Insights, as UnrealProfiler writes it, into its
    packets, event types and events. Written from the description of the format, not from the
    writer, so that the one checks the other.

    The stream is read whole: packets are first sorted by thread id (0 the descriptions of event
    types, 1 the important events, 2 and above one per thread, 0x3fff sync), each thread's
    payloads joined in order; then the types are read, then the important events, then the
    threads' events. So an event may precede the description of its type in the stream.

    Every read is checked against the data's end: a damaged stream gives an error, never a read
    out of bounds.
*/
class TraceStreamReader
{
public:
    struct Handshake
    {
        uint32_t magic = 0;
        uint16_t metadataSize = 0, metadataField = 0, controlPort = 0;
        uint8_t transportVersion = 0, protocolVersion = 0;
    };

    struct Packet
    {
        uint16_t threadId;
        size_t size;            // as the packet's header says, the header's bytes included
        bool compressed;
        size_t payloadSize;     // after decompression
    };

    struct Field
    {
        uint8_t kind, typeCode;
        uint16_t offset, size;
        std::string name;
        bool isAuxiliary() const noexcept           { return (typeCode & 0x80) != 0; }
    };

    struct EventType
    {
        uint16_t uid = 0;
        uint8_t flags = 0;
        std::string logger, name;
        std::vector<Field> fields;
        size_t fixedSize = 0;                       // the end of the last field that is not auxiliary
        std::string getFullName() const             { return logger + "." + name; }
        bool hasAuxiliaryData() const noexcept      { return (flags & 2) != 0; }
        bool isNoSync() const noexcept              { return (flags & 4) != 0; }
    };

    struct Event
    {
        uint16_t threadId;                          // 1 for important events
        uint16_t uid;
        int64_t serial;                             // -1 without
        std::vector<uint8_t> fixed;
        std::vector<uint8_t> auxiliary;
        int auxiliaryField = -1;
        size_t numAuxiliaryPieces = 0;
    };

    /** False, with the reason in getError(), when the stream is damaged; what was read before
        the damage stays. */
    bool read (const uint8_t* data, size_t size);

    const std::string& getError() const noexcept                        { return error; }
    const Handshake& getHandshake() const noexcept                      { return handshake; }
    const std::vector<Packet>& getPackets() const noexcept              { return packets; }
    const std::map<uint16_t, EventType>& getTypes() const noexcept      { return types; }
    const std::vector<Event>& getImportantEvents() const noexcept       { return importantEvents; }
    const std::map<uint16_t, std::vector<Event>>& getThreadEvents() const noexcept  { return threadEvents; }

    const EventType* findType (uint16_t uid) const;

    /** An unsigned or signed integer field of the event, by name; 0 when absent. */
    uint64_t getUnsigned (const Event& event, const char* fieldName) const;
    int64_t getSigned (const Event& event, const char* fieldName) const;
    double getDouble (const Event& event, const char* fieldName) const;
    std::string getText (const Event& event) const   { return { event.auxiliary.begin(), event.auxiliary.end() }; }

    static constexpr uint32_t handshakeMagic = 0x54524332;

private:
    std::string error;
    Handshake handshake;
    std::vector<Packet> packets;
    std::map<uint16_t, std::vector<uint8_t>> payloads;      // joined, by thread id
    std::map<uint16_t, EventType> types;
    std::vector<Event> importantEvents;
    std::map<uint16_t, std::vector<Event>> threadEvents;

    bool fail (const std::string& reason);
    bool readHandshake (const uint8_t* data, size_t size);
    bool readPackets (const uint8_t* data, size_t size);
    bool readTypes (const std::vector<uint8_t>& payload);
    bool readImportantEvents (const std::vector<uint8_t>& payload);
    bool readThreadEvents (uint16_t threadId, const std::vector<uint8_t>& payload);
    /** Reads up to end at most. */
    bool readAuxiliary (const uint8_t* data, size_t end, size_t& position, Event& event, uint8_t pieceUid, uint8_t endUid);
    const Field* findField (const Event& event, const char* fieldName) const;
};

} // namespace tov
