#pragma once

#include "TraceBuffer.h"
#include "TraceChannel.h"
#include "TraceEventTypes.h"
#include "TraceImportantEvents.h"
#include "TracePacket.h"
#include "TraceTail.h"
#include "TraceThreadState.h"
#include "TraceTransport.h"
#include <array>
#include <atomic>
#include <functional>
#include <memory>

namespace tov
{

class TraceWorkerThread;

/** The monotonic clock in nanoseconds: the cycles of the trace stream, 1e9 a second. */
uint64_t readTraceClock() noexcept;

struct TraceWriterOptions
{
    /** How much of the threads' latest data a connection made later receives. */
    size_t tailSize = 0x400000;
    /** Without the "TraceWorker" thread, somebody calls tick() (UnrealProfiler does at each frame). */
    bool workerThread = true;
    /** Keeps the important events for connections made after they were written. */
    bool importantCache = true;
    /** Called by the worker on each new connection, after the important events were sent. */
    std::function<void()> connectionCallback;
    /** Where cycles come from, and how many make a second. */
    uint64_t (*clock)() noexcept = readTraceClock;
    uint64_t cycleFrequency = 1000000000;
    /** The number of event uids already given out: lets tests reach the limit of uids. */
    uint32_t uidsGivenOut = 0;
};

/** The writing side of a trace stream in the format of Unreal Insights, which UnrealProfiler
    drives. The calling threads do little: each writes its events into a 4096-byte buffer of its
    own (see TraceBuffer), and events that every connection needs into shared pages (see
    TraceImportantEvents). A worker, the "TraceWorker" thread, collects it all in ticks and
    writes the stream:

        handshake (12 bytes), then packets (see TracePacket) of thread id
          0      descriptions of event types, as each is first used
          1      important events: uid, size, fixed part, auxiliary data
          2...   one id per thread: its events (uid in the stored form, a 3-byte serial unless the
                 type has no synchronisation, fixed part, auxiliary data)
          0x3fff sync packets, three after each connection

    A new connection receives the handshake, every event type, the important events kept so far,
    and the tail of the threads' data. Events of a disabled channel are not written; the
    runtime's own events ("$Trace", "Trace") always are.

    One writer at a time in a process: a thread keeps its state of the writer it last used.
*/
class TraceWriter
{
public:
    enum class Channel { cpu, gpu, frame, counters };

    /** Notes the start cycle and writes "NewTrace"; starts the worker if asked to. */
    explicit TraceWriter (const TraceWriterOptions& options = {});
    /** Stops the worker, runs a last tick, closes the stream and frees every buffer. */
    ~TraceWriter();

    TraceTransport& getTransport() noexcept             { return transport; }

    TraceChannel& getChannel (Channel channel) noexcept { return channels[(size_t) channel]; }
    bool isChannelEnabled (Channel channel) const noexcept  { return channels[(size_t) channel].isEnabled(); }
    /** Writes "ChannelToggle" when the state changes. */
    void setChannelEnabled (Channel channel, bool shouldBeEnabled);

    uint64_t getCycle() const noexcept                  { return options.clock(); }

    //==============================================================================
    /** From any thread. The fixed part has the type's fixed size; the auxiliary data goes to
        the type's field of auxiliary data. */
    void writeImportant (TraceEventKind kind, const uint8_t* fixed, const void* auxiliary = nullptr, size_t auxiliarySize = 0);
    /** An important event that only the calling thread's scopes refer to (their "EventSpec"):
        held with the thread's batch of scopes and written to the important events just before
        the batch, all that the batch refers to in one piece, so that a scope touches nothing
        that other threads share. A thread's important events keep the order it wrote them in:
        writeImportant writes what the thread holds first. */
    void writeImportantOfScopes (TraceEventKind kind, const uint8_t* fixed, const void* auxiliary = nullptr, size_t auxiliarySize = 0);
    /** Into the calling thread's buffer. */
    void writeToThread (TraceEventKind kind, const uint8_t* fixed, const void* auxiliary = nullptr, size_t auxiliarySize = 0);
    /** "ThreadInfo" for the calling thread. */
    void writeThreadInfo (const juce::String& name, uint32_t systemId, int32_t sortHint);

    /** A new id for an "EventSpec", never given before on this stream. A thread takes its ids
        from a range of its own, so that a scope touches no counter that all threads share: ids
        are unique, but not in the order they are written across threads. */
    uint32_t takeSpecId();
    static constexpr uint32_t specIdsPerRange = 256;

    /** Scopes of the calling thread, gathered in its batch until it is full. */
    void enterScope (uint32_t specId, uint64_t cycle);
    void leaveScope (uint64_t cycle);
    /** Writes the calling thread's batch now; a thread's batch is also written when it ends. */
    void flushScopes();

    /** The calling thread's id on the stream, allotted on first use. */
    uint16_t getCurrentThreadId()                       { return getThreadState().threadId; }

    //==============================================================================
    /** One pass of the worker: a new connection, new channels and event types, the important
        events, the threads' buffers, a sync packet. A tick in progress makes another return. */
    void tick();
    bool hasWorkerThread() const noexcept               { return worker != nullptr; }

    size_t getImportantCacheSize() const noexcept       { return importantEvents.getCacheSize(); }
    size_t getNumBufferBlocks() const noexcept          { return bufferPool.getNumBlocks(); }
    const TraceTail& getTail() const noexcept           { return tail; }

    static constexpr size_t eventTypesPacketSize = 3584;

private:
    friend struct TraceThreadExit;

    const TraceWriterOptions options;
    const uint64_t serial;
    uint64_t startCycle = 0;
    std::array<TraceChannel, 4> channels { TraceChannel ("CpuChannel"), TraceChannel ("GpuChannel"),
                                           TraceChannel ("FrameChannel"), TraceChannel ("CountersChannel") };
    std::array<bool, 4> channelsAnnounced {};   // the worker's

    std::array<std::atomic<uint16_t>, numTraceEventKinds> uids {};
    std::atomic<uint32_t> uidsGivenOut;
    std::atomic<uint32_t> newEventKinds { 0 };  // a bit per kind given a uid since the last tick
    std::atomic<uint32_t> serialNumber { 0 };
    std::atomic<uint32_t> specIdsGivenOut { 0 };
    std::atomic<uint16_t> nextThreadId { TracePacket::firstThreadId };

    TraceBufferPool bufferPool;
    TraceImportantEvents importantEvents;
    std::atomic<TraceThreadState*> threads { nullptr };
    TraceTransport transport;
    TraceTail tail;
    int syncPacketsLeft = 0;                    // the worker's
    std::atomic_flag tickInProgress = ATOMIC_FLAG_INIT;
    std::unique_ptr<TraceWorkerThread> worker;

    uint16_t getUid (TraceEventKind kind) noexcept;
    uint16_t giveUid (TraceEventKind kind) noexcept;

    TraceThreadState& getThreadState();
    [[gnu::noinline]] void attachThread();
    TraceThreadState* makeThreadState();
    void threadEnded (TraceThreadState& state);
    void writeToThread (TraceThreadState& state, TraceEventKind kind, const uint8_t* fixed, const void* auxiliary, size_t auxiliarySize);
    static size_t getImportantSize (const TraceEventType& type, size_t auxiliarySize) noexcept;
    static void makeImportant (uint8_t* event, size_t size, uint16_t uid, const TraceEventType& type, const uint8_t* fixed,
                               const void* auxiliary, size_t auxiliarySize) noexcept;
    void writeHeldImportant (TraceThreadState& state);
    uint8_t* reserve (TraceThreadState& state, size_t size);
    void takeNextBuffer (TraceThreadState& state);
    void writeAuxiliaryPieces (TraceThreadState& state, uint8_t fieldIndex, const uint8_t* data, size_t size);
    void flushBatch (TraceThreadState& state);

    void connectPendingHandle();
    void announceChannels();
    void describeEventTypes (uint32_t kinds);
    void sendThreadBuffers();
    void sendThreadBuffers (TraceThreadState& state);
    void sendPacket (uint16_t threadId, const uint8_t* payload, size_t size);

    TraceWriter (const TraceWriter&) = delete;
    TraceWriter& operator= (const TraceWriter&) = delete;
};

} // namespace tov
