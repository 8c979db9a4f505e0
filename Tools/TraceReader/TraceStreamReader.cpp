#include "TraceStreamReader.h"
#include <cstring>
#include <lz4.h>

namespace tov
{

namespace
{
uint64_t readLittle (const uint8_t* data, size_t size) noexcept
{
    uint64_t value = 0;
    for (size_t i = 0; i < size; ++i)
        value |= (uint64_t) data[i] << (8 * i);
    return value;
}

// The uids of auxiliary data and its end byte: plain among important events, doubled in threads.
constexpr uint8_t importantPieceUid = 1, importantEndUid = 3, threadPieceUid = 2, threadEndUid = 6;
constexpr uint16_t syncThreadId = 0x3fff;
} // namespace

bool TraceStreamReader::fail (const std::string& reason)
{
    if (error.empty())
        error = reason;
    return false;
}

bool TraceStreamReader::read (const uint8_t* data, size_t size)
{
    if (! readHandshake (data, size) || ! readPackets (data + 12, size - 12))
        return false;
    if (payloads.count (0) != 0 && ! readTypes (payloads[0]))
        return false;
    if (payloads.count (1) != 0 && ! readImportantEvents (payloads[1]))
        return false;
    for (const auto& [threadId, payload] : payloads)
        if (threadId >= 2 && ! readThreadEvents (threadId, payload))
            return false;
    return true;
}

bool TraceStreamReader::readHandshake (const uint8_t* data, size_t size)
{
    if (size < 12)
        return fail ("the stream is shorter than its handshake");
    handshake.magic = (uint32_t) readLittle (data, 4);
    handshake.metadataSize = (uint16_t) readLittle (data + 4, 2);
    handshake.metadataField = (uint16_t) readLittle (data + 6, 2);
    handshake.controlPort = (uint16_t) readLittle (data + 8, 2);
    handshake.transportVersion = data[10];
    handshake.protocolVersion = data[11];
    if (handshake.magic != handshakeMagic)
        return fail ("wrong magic number");
    if (handshake.metadataSize != 4 || handshake.transportVersion != 4 || handshake.protocolVersion != 6)
        return fail ("unknown versions");
    return true;
}

bool TraceStreamReader::readPackets (const uint8_t* data, size_t size)
{
    size_t position = 0;
    while (position < size)
    {
        if (size - position < 4)
            return fail ("a packet's header is cut at byte " + std::to_string (12 + position));
        const size_t packetSize = (size_t) readLittle (data + position, 2);
        const auto rawThreadId = (uint16_t) readLittle (data + position + 2, 2);
        const bool compressed = (rawThreadId & 0x8000) != 0;
        const uint16_t threadId = rawThreadId & 0x3fff;
        const size_t headerSize = compressed ? 6 : 4;
        if (packetSize < headerSize || packetSize > size - position)
            return fail ("a packet's size is wrong at byte " + std::to_string (12 + position));

        const uint8_t* body = data + position + headerSize;
        const size_t bodySize = packetSize - headerSize;
        std::vector<uint8_t> payload (body, body + bodySize);
        if (compressed)
        {
            payload.assign ((size_t) readLittle (data + position + 4, 2), 0);
            const int decompressed = LZ4_decompress_safe (reinterpret_cast<const char*> (body), reinterpret_cast<char*> (payload.data()),
                                                          (int) bodySize, (int) payload.size());
            if (decompressed < 0 || (size_t) decompressed != payload.size())
                return fail ("a compressed packet does not decompress at byte " + std::to_string (12 + position));
        }
        if (threadId == syncThreadId && (compressed || packetSize != 4))
            return fail ("a sync packet has a payload");

        packets.push_back ({ threadId, packetSize, compressed, payload.size() });
        if (threadId != syncThreadId)
        {
            auto& joined = payloads[threadId];
            joined.insert (joined.end(), payload.begin(), payload.end());
        }
        position += packetSize;
    }
    return true;
}

// uid 0, record size, uid, number of fields, flags, name lengths, 8 bytes per field, names.
bool TraceStreamReader::readTypes (const std::vector<uint8_t>& payload)
{
    size_t position = 0;
    while (position < payload.size())
    {
        const uint8_t* record = payload.data() + position;
        const size_t left = payload.size() - position;
        if (left < 10 || readLittle (record, 2) != 0)
            return fail ("an event type's record is damaged");
        const size_t recordSize = (size_t) readLittle (record + 2, 2);
        if (recordSize + 4 > left || recordSize < 6)
            return fail ("an event type's record is cut");

        EventType type;
        type.uid = (uint16_t) readLittle (record + 4, 2);
        const size_t numFields = record[6];
        type.flags = record[7];
        const size_t loggerLength = record[8], nameLength = record[9];
        size_t namesAt = 10 + 8 * numFields;
        size_t namesSize = loggerLength + nameLength;
        for (size_t i = 0; i < numFields && 10 + 8 * i + 8 <= recordSize + 4; ++i)
            namesSize += record[10 + 8 * i + 7];
        if (namesAt + namesSize != recordSize + 4)
            return fail ("an event type's record has the wrong size");

        type.logger.assign (reinterpret_cast<const char*> (record + namesAt), loggerLength);
        namesAt += loggerLength;
        type.name.assign (reinterpret_cast<const char*> (record + namesAt), nameLength);
        namesAt += nameLength;
        for (size_t i = 0; i < numFields; ++i)
        {
            const uint8_t* fieldRecord = record + 10 + 8 * i;
            Field field { fieldRecord[0], fieldRecord[6], (uint16_t) readLittle (fieldRecord + 2, 2), (uint16_t) readLittle (fieldRecord + 4, 2), {} };
            field.name.assign (reinterpret_cast<const char*> (record + namesAt), fieldRecord[7]);
            namesAt += fieldRecord[7];
            if (! field.isAuxiliary())
                type.fixedSize = std::max (type.fixedSize, (size_t) field.offset + field.size);
            type.fields.push_back (std::move (field));
        }
        types[type.uid] = std::move (type);
        position += recordSize + 4;
    }
    return true;
}

// uid, size of the rest, fixed part, auxiliary data.
bool TraceStreamReader::readImportantEvents (const std::vector<uint8_t>& payload)
{
    size_t position = 0;
    while (position < payload.size())
    {
        if (payload.size() - position < 4)
            return fail ("an important event's header is cut");
        Event event { 1, (uint16_t) readLittle (payload.data() + position, 2), -1, {}, {} };
        const size_t bodySize = (size_t) readLittle (payload.data() + position + 2, 2);
        position += 4;
        const auto* type = findType (event.uid);
        if (type == nullptr)
            return fail ("an important event has the unknown uid " + std::to_string (event.uid));
        if (bodySize > payload.size() - position || bodySize < type->fixedSize)
            return fail ("an important event is cut");
        const size_t end = position + bodySize;
        event.fixed.assign (payload.begin() + (long) position, payload.begin() + (long) (position + type->fixedSize));
        position += type->fixedSize;
        if (type->hasAuxiliaryData() && ! readAuxiliary (payload.data(), end, position, event, importantPieceUid, importantEndUid))
            return false;
        if (position != end)
            return fail ("an important event's size does not match its content");
        importantEvents.push_back (std::move (event));
    }
    return true;
}

// Stored uid (the uid times 2), a 3-byte serial unless the type has no synchronisation, the
// fixed part, the auxiliary data.
bool TraceStreamReader::readThreadEvents (uint16_t threadId, const std::vector<uint8_t>& payload)
{
    auto& events = threadEvents[threadId];
    size_t position = 0;
    while (position < payload.size())
    {
        if (payload.size() - position < 2)
            return fail ("an event of thread " + std::to_string (threadId) + " is cut");
        Event event { threadId, (uint16_t) (readLittle (payload.data() + position, 2) >> 1), -1, {}, {} };
        position += 2;
        const auto* type = findType (event.uid);
        if (type == nullptr)
            return fail ("an event of thread " + std::to_string (threadId) + " has the unknown uid " + std::to_string (event.uid));
        if (! type->isNoSync())
        {
            if (payload.size() - position < 3)
                return fail ("an event's serial is cut");
            event.serial = (int64_t) readLittle (payload.data() + position, 3);
            position += 3;
        }
        if (payload.size() - position < type->fixedSize)
            return fail ("an event's fixed part is cut");
        event.fixed.assign (payload.begin() + (long) position, payload.begin() + (long) (position + type->fixedSize));
        position += type->fixedSize;
        if (type->hasAuxiliaryData() && ! readAuxiliary (payload.data(), payload.size(), position, event, threadPieceUid, threadEndUid))
            return false;
        events.push_back (std::move (event));
    }
    return true;
}

// Pieces, each a 4-byte header (uid, field index in bits 8 to 12, size from bit 13) and its
// bytes, until the end byte.
bool TraceStreamReader::readAuxiliary (const uint8_t* data, size_t end, size_t& position, Event& event, uint8_t pieceUid, uint8_t endUid)
{
    for (;;)
    {
        if (position >= end)
            return fail ("auxiliary data is cut");
        if (data[position] == endUid)
        {
            ++position;
            return true;
        }
        if (data[position] != pieceUid || end - position < 4)
            return fail ("auxiliary data is damaged");
        const auto header = (uint32_t) readLittle (data + position, 4);
        const size_t size = header >> 13;
        position += 4;
        if (size > end - position)
            return fail ("auxiliary data is cut");
        event.auxiliaryField = (int) ((header >> 8) & 0x1f);
        event.auxiliary.insert (event.auxiliary.end(), data + position, data + position + size);
        ++event.numAuxiliaryPieces;
        position += size;
    }
}

const TraceStreamReader::EventType* TraceStreamReader::findType (uint16_t uid) const
{
    const auto found = types.find (uid);
    return found != types.end() ? &found->second : nullptr;
}

const TraceStreamReader::Field* TraceStreamReader::findField (const Event& event, const char* fieldName) const
{
    if (const auto* type = findType (event.uid))
        for (const auto& field : type->fields)
            if (field.name == fieldName && ! field.isAuxiliary() && (size_t) field.offset + field.size <= event.fixed.size() && field.size <= 8)
                return &field;
    return nullptr;
}

uint64_t TraceStreamReader::getUnsigned (const Event& event, const char* fieldName) const
{
    const auto* field = findField (event, fieldName);
    return field != nullptr ? readLittle (event.fixed.data() + field->offset, field->size) : 0;
}

int64_t TraceStreamReader::getSigned (const Event& event, const char* fieldName) const
{
    const auto* field = findField (event, fieldName);
    if (field == nullptr || field->size == 0)
        return 0;
    const uint64_t value = readLittle (event.fixed.data() + field->offset, field->size);
    const unsigned bits = 8u * field->size;
    return bits >= 64 ? (int64_t) value : (int64_t) (value << (64 - bits)) >> (64 - bits);
}

double TraceStreamReader::getDouble (const Event& event, const char* fieldName) const
{
    const auto* field = findField (event, fieldName);
    if (field == nullptr || field->size != 8)
        return 0.0;
    const uint64_t bits = readLittle (event.fixed.data() + field->offset, 8);
    double value;
    std::memcpy (&value, &bits, sizeof (value));
    return value;
}

} // namespace tov
