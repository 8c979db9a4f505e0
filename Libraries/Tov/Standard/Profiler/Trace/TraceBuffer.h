#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace tov
{

/** One buffer of a thread's events: 4096 bytes, whose last 64 hold its bookkeeping.

    Its thread writes at the write cursor and publishes what it wrote with a release store of
    the committed cursor; the worker sends from its sent cursor up to the committed one. When
    the buffer is full its thread links the next one, after its last commit: a buffer with a
    next one commits no more.
*/
struct TraceBuffer
{
    static constexpr size_t size = 4096;
    static constexpr size_t bookkeepingSize = 64;
    static constexpr size_t capacity = size - bookkeepingSize;

    uint8_t data[capacity];

    // Bookkeeping.
    uint32_t writeCursor;                   // its thread's
    std::atomic<uint32_t> committed;
    uint32_t sent;                          // the worker's
    uint16_t ownerThreadId;                 // the thread's id on the stream
    uint16_t unused = 0;
    uint64_t startCycle;                    // when the thread's first buffer was taken
    std::atomic<TraceBuffer*> next;         // the thread's next buffer
    std::atomic<TraceBuffer*> nextFree;     // in the free list
    uint8_t padding[bookkeepingSize - 40];

    /** Ready for its thread to write from the start. */
    void reset (uint16_t threadId, uint64_t threadStartCycle) noexcept
    {
        writeCursor = 0;
        committed.store (0, std::memory_order_relaxed);
        sent = 0;
        ownerThreadId = threadId;
        startCycle = threadStartCycle;
        next.store (nullptr, std::memory_order_relaxed);
    }

    size_t getRoom() const noexcept         { return capacity - writeCursor; }
    void commit() noexcept                  { committed.store (writeCursor, std::memory_order_release); }
};

static_assert (sizeof (TraceBuffer) == TraceBuffer::size, "the bookkeeping fills the last 64 bytes of a buffer");

/** Where threads take their buffers, and the worker gives back the ones it has sent: buffers cut
    from blocks of 65536 bytes, in a lock-free list. A block is added when the list is empty;
    blocks go only with the pool.

    The head of the list carries a count of its changes in its top 16 bits, so that a thread that
    read an old head cannot take a buffer that went and came back meanwhile.
*/
class TraceBufferPool
{
public:
    TraceBufferPool() = default;
    ~TraceBufferPool();

    TraceBuffer* take();
    void giveBack (TraceBuffer* buffer) noexcept;

    static constexpr size_t blockSize = 65536;
    size_t getNumBlocks() const noexcept        { return numBlocks.load(); }

private:
    std::atomic<uint64_t> freeHead { 0 };
    std::atomic<void*> blocks { nullptr };      // each block's first pointer links the one before
    std::atomic<size_t> numBlocks { 0 };

    void addBlock();
    static TraceBuffer* getPointer (uint64_t head) noexcept     { return reinterpret_cast<TraceBuffer*> (head & 0xffffffffffffull); }
    static uint64_t makeHead (TraceBuffer* buffer, uint64_t oldHead) noexcept
    {
        return (reinterpret_cast<uint64_t> (buffer) & 0xffffffffffffull) | ((oldHead & 0xffff000000000000ull) + 0x1000000000000ull);
    }

    TraceBufferPool (const TraceBufferPool&) = delete;
    TraceBufferPool& operator= (const TraceBufferPool&) = delete;
};

} // namespace tov
