#include "TraceWriter.h"
#include "TraceBytes.h"
#include "TracePacket.h"
#include "TraceWorkerThread.h"
#include <algorithm>
#include <mutex>
#include <time.h>

namespace tov
{

uint64_t readTraceClock() noexcept
{
    timespec now {};
    clock_gettime (CLOCK_MONOTONIC, &now);
    return (uint64_t) now.tv_sec * 1000000000ull + (uint64_t) now.tv_nsec;
}

namespace
{
constexpr uint16_t refusedUid = 0xffff;
constexpr uint8_t threadAuxiliaryUid = traceAuxiliaryUid * 2;
constexpr uint8_t threadAuxiliaryEndUid = traceAuxiliaryEndUid * 2;

// The live writer, for threads that end: they write their last scopes under this lock, and the
// writer leaves it under the lock before it goes.
std::mutex liveWriterLock;
TraceWriter* liveWriter = nullptr;
std::atomic<uint64_t> lastWriterSerial { 0 };

uint8_t getAuxiliaryFieldIndex (const TraceEventType& type) noexcept
{
    for (size_t i = 0; i < type.fields.size(); ++i)
        if ((type.fields[i].typeCode & 0x80) != 0)
            return (uint8_t) i;
    return 0;
}

/** The header of a piece of auxiliary data: the uid in the low byte, the field in bits 8 to 12,
    the size from bit 13 on. */
uint32_t makeAuxiliaryHeader (uint8_t uid, uint8_t fieldIndex, size_t size) noexcept
{
    return (uint32_t) uid | ((uint32_t) (fieldIndex & 0x1f) << 8) | ((uint32_t) size << 13);
}
} // namespace

/** What a thread keeps of the writer it uses. Every scope reaches it: it is zero-initialised and
    trivially destructible, so that the initial-exec model (the library is linked, never loaded
    late) makes it a load at a fixed offset from the thread pointer, with no guard to check and
    no call to __tls_get_addr. */
struct TraceThreadSlot
{
    uint64_t writerSerial;
    TraceThreadState* state;
};

static thread_local TraceThreadSlot threadSlot __attribute__ ((tls_model ("initial-exec"))) = {};

/** Armed when the thread first takes a state, off the path of scopes: when the thread ends, its
    last scopes are written. */
struct TraceThreadExit
{
    bool armed = false;

    ~TraceThreadExit()
    {
        const std::lock_guard<std::mutex> lock (liveWriterLock);
        if (armed && liveWriter != nullptr && liveWriter->serial == threadSlot.writerSerial)
            liveWriter->threadEnded (*threadSlot.state);
    }
};

static thread_local TraceThreadExit threadExit;

//==============================================================================
TraceWriter::TraceWriter (const TraceWriterOptions& options)
    : options (options), serial (++lastWriterSerial), uidsGivenOut (options.uidsGivenOut), tail (options.tailSize)
{
    startCycle = options.clock();
    uint8_t newTrace[19];
    writeLittleEndian<uint64_t> (newTrace, startCycle);
    writeLittleEndian<uint64_t> (newTrace + 8, options.cycleFrequency);
    writeLittleEndian<uint16_t> (newTrace + 16, 0x524d);
    newTrace[18] = 8;
    writeImportant (TraceEventKind::newTrace, newTrace);

    {
        const std::lock_guard<std::mutex> lock (liveWriterLock);
        liveWriter = this;
    }
    if (options.workerThread)
    {
        worker = std::make_unique<TraceWorkerThread> (*this);
        worker->startThread();
    }
}

TraceWriter::~TraceWriter()
{
    {
        const std::lock_guard<std::mutex> lock (liveWriterLock);
        if (liveWriter == this)
            liveWriter = nullptr;
    }
    worker.reset();
    tick();
    transport.close();
    for (auto* state = threads.load(); state != nullptr;)
    {
        auto* next = state->nextThread.load();
        delete state;
        state = next;
    }
}

void TraceWriter::setChannelEnabled (Channel channel, bool shouldBeEnabled)
{
    auto& toggled = getChannel (channel);
    if (! toggled.setEnabled (shouldBeEnabled))
        return;
    uint8_t fixed[5];
    writeLittleEndian<uint32_t> (fixed, toggled.getId());
    fixed[4] = shouldBeEnabled ? 1 : 0;
    writeImportant (TraceEventKind::channelToggle, fixed);
}

//==============================================================================
uint16_t TraceWriter::getUid (TraceEventKind kind) noexcept
{
    const uint16_t uid = uids[(size_t) kind].load (std::memory_order_acquire);
    if (uid == 0)
        return giveUid (kind);
    return uid == refusedUid ? 0 : uid;
}

// Two threads may race to give the type its uid: the first one's stays, the other is unused.
uint16_t TraceWriter::giveUid (TraceEventKind kind) noexcept
{
    const uint32_t candidate = uidsGivenOut.fetch_add (1) + firstTraceEventUid;
    const uint16_t uid = candidate > lastTraceEventUid ? refusedUid : (uint16_t) candidate;
    uint16_t expected = 0;
    if (uids[(size_t) kind].compare_exchange_strong (expected, uid))
    {
        if (uid != refusedUid)
            newEventKinds.fetch_or (1u << (uint32_t) kind);
        expected = uid;
    }
    return expected == refusedUid ? 0 : expected;
}

void TraceWriter::writeImportant (TraceEventKind kind, const uint8_t* fixed, const void* auxiliary, size_t auxiliarySize)
{
    const uint16_t uid = getUid (kind);
    if (uid == 0)
        return;
    if (threadSlot.writerSerial == serial)
        writeHeldImportant (*threadSlot.state);
    const auto& type = TraceEventType::get (kind);
    const size_t size = getImportantSize (type, auxiliarySize);

    // Names are short: the event is made on the stack unless it is long.
    uint8_t onStack[256];
    std::unique_ptr<uint8_t[]> onHeap;
    uint8_t* event = onStack;
    if (size > sizeof (onStack))
        event = (onHeap = std::make_unique<uint8_t[]> (size)).get();
    makeImportant (event, size, uid, type, fixed, auxiliary, auxiliarySize);
    importantEvents.write (event, size);
}

// A thread without a state yet writes its first spec straight away (see takeSpecId).
void TraceWriter::writeImportantOfScopes (TraceEventKind kind, const uint8_t* fixed, const void* auxiliary, size_t auxiliarySize)
{
    const auto& type = TraceEventType::get (kind);
    const size_t size = getImportantSize (type, auxiliarySize);
    if (threadSlot.writerSerial != serial || size > TraceThreadState::heldImportantSize)
        return writeImportant (kind, fixed, auxiliary, auxiliarySize);
    const uint16_t uid = getUid (kind);
    if (uid == 0)
        return;
    auto& state = *threadSlot.state;
    if (state.heldImportantCursor + size > TraceThreadState::heldImportantSize)
        writeHeldImportant (state);
    makeImportant (state.heldImportant + state.heldImportantCursor, size, uid, type, fixed, auxiliary, auxiliarySize);
    state.heldImportantCursor += size;
}

void TraceWriter::writeHeldImportant (TraceThreadState& state)
{
    if (state.heldImportantCursor == 0)
        return;
    importantEvents.write (state.heldImportant, state.heldImportantCursor);
    state.heldImportantCursor = 0;
}

size_t TraceWriter::getImportantSize (const TraceEventType& type, size_t auxiliarySize) noexcept
{
    return 4 + type.fixedSize + (type.hasAuxiliary() ? 4 + auxiliarySize + 1 : 0);
}

// uid, size of what follows, fixed part, then the auxiliary data with its header and end byte;
// size is getImportantSize's.
void TraceWriter::makeImportant (uint8_t* event, size_t size, uint16_t uid, const TraceEventType& type, const uint8_t* fixed,
                                 const void* auxiliary, size_t auxiliarySize) noexcept
{
    const size_t bodySize = size - 4;
    writeLittleEndian<uint16_t> (event, uid);
    writeLittleEndian<uint16_t> (event + 2, (uint16_t) std::min<size_t> (bodySize, 0xffff));
    std::memcpy (event + 4, fixed, type.fixedSize);
    if (type.hasAuxiliary())
    {
        uint8_t* data = event + 4 + type.fixedSize;
        writeLittleEndian<uint32_t> (data, makeAuxiliaryHeader (traceAuxiliaryUid, getAuxiliaryFieldIndex (type), auxiliarySize));
        std::memcpy (data + 4, auxiliary, auxiliarySize);
        data[4 + auxiliarySize] = traceAuxiliaryEndUid;
    }
}

void TraceWriter::writeToThread (TraceEventKind kind, const uint8_t* fixed, const void* auxiliary, size_t auxiliarySize)
{
    writeToThread (getThreadState(), kind, fixed, auxiliary, auxiliarySize);
}

// The stored uid (with bit 0 set for types without synchronisation), the serial for the others,
// the fixed part, then the auxiliary data in pieces that fit the buffers.
void TraceWriter::writeToThread (TraceThreadState& state, TraceEventKind kind, const uint8_t* fixed, const void* auxiliary, size_t auxiliarySize)
{
    const uint16_t uid = getUid (kind);
    if (uid == 0)
        return;
    const auto& type = TraceEventType::get (kind);
    const size_t headerSize = type.isNoSync() ? 2 : 5;
    uint8_t* event = reserve (state, headerSize + type.fixedSize);
    writeLittleEndian<uint16_t> (event, (uint16_t) (getStoredTraceUid (uid) | (type.isNoSync() ? 1 : 0)));
    if (! type.isNoSync())
    {
        const uint32_t serialOfEvent = serialNumber.fetch_add (1, std::memory_order_relaxed);
        event[2] = (uint8_t) serialOfEvent;
        event[3] = (uint8_t) (serialOfEvent >> 8);
        event[4] = (uint8_t) (serialOfEvent >> 16);
    }
    std::memcpy (event + headerSize, fixed, type.fixedSize);
    if (type.hasAuxiliary())
        writeAuxiliaryPieces (state, getAuxiliaryFieldIndex (type), static_cast<const uint8_t*> (auxiliary), auxiliarySize);
    state.current->commit();
}

void TraceWriter::writeAuxiliaryPieces (TraceThreadState& state, uint8_t fieldIndex, const uint8_t* data, size_t size)
{
    do
    {
        if (state.current->getRoom() < 5)
            takeNextBuffer (state);
        const size_t piece = std::min (size, state.current->getRoom() - 4);
        uint8_t* destination = reserve (state, 4 + piece);
        writeLittleEndian<uint32_t> (destination, makeAuxiliaryHeader (threadAuxiliaryUid, fieldIndex, piece));
        std::memcpy (destination + 4, data, piece);
        data += piece;
        size -= piece;
    }
    while (size > 0);
    *reserve (state, 1) = threadAuxiliaryEndUid;
}

void TraceWriter::writeThreadInfo (const juce::String& name, uint32_t systemId, int32_t sortHint)
{
    uint8_t fixed[12];
    writeLittleEndian<uint32_t> (fixed, getCurrentThreadId());
    writeLittleEndian<uint32_t> (fixed + 4, systemId);
    writeLittleEndian<int32_t> (fixed + 8, sortHint);
    const char* text = name.toRawUTF8();
    writeImportant (TraceEventKind::threadInfo, fixed, text, std::strlen (text));
}

//==============================================================================
// A thread without a state yet takes its id alone: its state is made when it enters its scope,
// after its "EventSpec" is written (which keeps the order of the first uids and of the clock's reads).
uint32_t TraceWriter::takeSpecId()
{
    if (threadSlot.writerSerial != serial)
        return specIdsGivenOut.fetch_add (1, std::memory_order_relaxed) + 1;
    auto& state = *threadSlot.state;
    if (state.specIdsLeft == 0)
    {
        state.nextSpecId = specIdsGivenOut.fetch_add (specIdsPerRange, std::memory_order_relaxed) + 1;
        state.specIdsLeft = specIdsPerRange;
    }
    --state.specIdsLeft;
    return state.nextSpecId++;
}

void TraceWriter::enterScope (uint32_t specId, uint64_t cycle)
{
    auto& state = getThreadState();
    state.enterScope (cycle, specId);
    if (state.isBatchFull())
        flushBatch (state);
}

void TraceWriter::leaveScope (uint64_t cycle)
{
    auto& state = getThreadState();
    state.leaveScope (cycle);
    if (state.isBatchFull())
        flushBatch (state);
}

// A thread that wrote nothing to this writer has nothing to write.
void TraceWriter::flushScopes()
{
    if (threadSlot.writerSerial == serial)
        flushBatch (*threadSlot.state);
}

// What the batch refers to goes to the important events before the batch is committed.
void TraceWriter::flushBatch (TraceThreadState& state)
{
    writeHeldImportant (state);
    if (state.batchCursor == 0)
        return;
    if (isChannelEnabled (Channel::cpu))
        writeToThread (state, TraceEventKind::eventBatch, nullptr, state.batch, state.batchCursor);
    state.batchCursor = 0;
    state.lastCycle = 0;
}

//==============================================================================
TraceThreadState& TraceWriter::getThreadState()
{
    if (threadSlot.writerSerial != serial)
        attachThread();
    return *threadSlot.state;
}

// Out of line, so that what every scope runs through stays small enough to be inlined.
void TraceWriter::attachThread()
{
    threadSlot.state = makeThreadState();
    threadSlot.writerSerial = serial;
    threadExit.armed = true;
}

// The thread's first buffer notes when it began, and starts with "ThreadTiming".
TraceThreadState* TraceWriter::makeThreadState()
{
    auto* state = new TraceThreadState();
    state->threadId = nextThreadId.fetch_add (1);
    auto* buffer = bufferPool.take();
    buffer->reset (state->threadId, options.clock());
    state->current = buffer;
    state->first.store (buffer, std::memory_order_relaxed);

    TraceThreadState* head = threads.load();
    do
        state->nextThread.store (head, std::memory_order_relaxed);
    while (! threads.compare_exchange_weak (head, state, std::memory_order_acq_rel));

    uint8_t timing[8];
    writeLittleEndian<uint64_t> (timing, buffer->startCycle - startCycle);
    writeToThread (*state, TraceEventKind::threadTiming, timing, nullptr, 0);
    return state;
}

void TraceWriter::threadEnded (TraceThreadState& state)
{
    flushBatch (state);
    state.ended.store (true, std::memory_order_release);
}

uint8_t* TraceWriter::reserve (TraceThreadState& state, size_t size)
{
    if (state.current->getRoom() < size)
        takeNextBuffer (state);
    uint8_t* destination = state.current->data + state.current->writeCursor;
    state.current->writeCursor += (uint32_t) size;
    return destination;
}

// The old buffer's last commit comes before the link to the new one: a linked buffer is final.
void TraceWriter::takeNextBuffer (TraceThreadState& state)
{
    auto* old = state.current;
    auto* buffer = bufferPool.take();
    buffer->reset (old->ownerThreadId, old->startCycle);
    old->commit();
    old->next.store (buffer, std::memory_order_release);
    state.current = buffer;
}

//==============================================================================
void TraceWriter::tick()
{
    if (tickInProgress.test_and_set (std::memory_order_acquire))
        return;
    connectPendingHandle();
    announceChannels();
    describeEventTypes (newEventKinds.exchange (0));
    importantEvents.drain ([this] (const uint8_t* data, size_t size) { sendPacket (TracePacket::importantEventsThreadId, data, size); },
                           options.importantCache);
    sendThreadBuffers();
    if (syncPacketsLeft > 0)
    {
        --syncPacketsLeft;
        const auto sync = TracePacket::makeSync();
        transport.send (sync.data(), sync.size());
    }
    tickInProgress.clear (std::memory_order_release);
}

void TraceWriter::connectPendingHandle()
{
    if (! transport.takePendingHandle())
        return;
    const auto handshake = TracePacket::makeHandshake();
    if (! transport.send (handshake.data(), handshake.size()))
        return;
    // Every type is described again on the new connection.
    newEventKinds.exchange (0);
    describeEventTypes ((1u << numTraceEventKinds) - 1);
    importantEvents.sendCache ([this] (const uint8_t* data, size_t size) { sendPacket (TracePacket::importantEventsThreadId, data, size); });
    if (options.connectionCallback)
        options.connectionCallback();
    tail.send ([this] (const std::vector<uint8_t>& packet) { transport.send (packet.data(), packet.size()); });
    syncPacketsLeft = 3;
}

void TraceWriter::announceChannels()
{
    for (size_t i = 0; i < channels.size(); ++i)
    {
        if (channelsAnnounced[i])
            continue;
        channelsAnnounced[i] = true;
        uint8_t fixed[6];
        writeLittleEndian<uint32_t> (fixed, channels[i].getId());
        fixed[4] = channels[i].isEnabled() ? 1 : 0;
        fixed[5] = 0;
        writeImportant (TraceEventKind::channelAnnounce, fixed, channels[i].getName(), std::strlen (channels[i].getName()));
    }
}

// In the order of their uids, in packets of thread id 0 of at least 3584 bytes but the last.
void TraceWriter::describeEventTypes (uint32_t kinds)
{
    std::vector<std::pair<uint16_t, TraceEventKind>> described;
    for (int kind = 0; kind < numTraceEventKinds; ++kind)
    {
        const uint16_t uid = uids[(size_t) kind].load (std::memory_order_acquire);
        if ((kinds & (1u << kind)) != 0 && uid != 0 && uid != refusedUid)
            described.emplace_back (uid, (TraceEventKind) kind);
    }
    std::sort (described.begin(), described.end());

    std::vector<uint8_t> payload;
    for (const auto& [uid, kind] : described)
    {
        TraceEventType::get (kind).appendDescription (payload, uid);
        if (payload.size() >= eventTypesPacketSize)
        {
            sendPacket (TracePacket::eventTypesThreadId, payload.data(), payload.size());
            payload.clear();
        }
    }
    if (! payload.empty())
        sendPacket (TracePacket::eventTypesThreadId, payload.data(), payload.size());
}

void TraceWriter::sendThreadBuffers()
{
    for (auto* state = threads.load (std::memory_order_acquire); state != nullptr; state = state->nextThread.load (std::memory_order_relaxed))
        sendThreadBuffers (*state);
}

// What was committed goes in one packet per buffer; a buffer that has a next one is final, and
// goes back to the pool once sent. The last buffer of a thread that ended goes back too.
void TraceWriter::sendThreadBuffers (TraceThreadState& state)
{
    const bool ended = state.ended.load (std::memory_order_acquire);
    auto* buffer = state.first.load (std::memory_order_relaxed);
    while (buffer != nullptr)
    {
        auto* next = buffer->next.load (std::memory_order_acquire);
        const uint32_t committed = buffer->committed.load (std::memory_order_acquire);
        if (committed > buffer->sent)
        {
            std::vector<uint8_t> packet = TracePacket::make (state.threadId, buffer->data + buffer->sent, committed - buffer->sent);
            tail.add (packet);
            transport.send (packet.data(), packet.size());
            buffer->sent = committed;
        }
        if (next == nullptr && ! ended)
            break;
        bufferPool.giveBack (buffer);
        buffer = next;
        state.first.store (buffer, std::memory_order_relaxed);
    }
}

void TraceWriter::sendPacket (uint16_t threadId, const uint8_t* payload, size_t size)
{
    const auto packet = TracePacket::make (threadId, payload, size);
    transport.send (packet.data(), packet.size());
}

} // namespace tov
