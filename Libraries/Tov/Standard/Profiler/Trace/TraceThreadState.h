#pragma once

#include "TraceBuffer.h"
#include <atomic>
#include <cstdint>

namespace tov
{

/** What the trace stream keeps of one thread: its id on the stream, its chain of buffers (its
    thread writes at the newest, the worker sends from the oldest), its batch of scopes and the
    "EventSpec"s of those scopes, held until the batch is written.

    Scopes are gathered in the batch as variable-length integers: an enter is the cycles since
    the last one written, times 2, plus 1, then the id of its "EventSpec"; a leave the cycles since, times 2.
    A full batch becomes one event.
*/
struct TraceThreadState
{
    static constexpr size_t batchSize = 240;

    uint16_t threadId = 0;
    TraceBuffer* current = nullptr;             // its thread's
    std::atomic<TraceBuffer*> first { nullptr };  // the oldest buffer not yet sent whole; the worker's once set
    std::atomic<bool> ended { false };          // its thread has gone, and wrote its last
    std::atomic<TraceThreadState*> nextThread { nullptr };

    // Room past the end for the record that fills the batch: an enter is at most 15 bytes.
    uint8_t batch[batchSize + 16];
    size_t batchCursor = 0;
    uint64_t lastCycle = 0;

    // The thread's range of "EventSpec" ids, taken from the writer's counter.
    uint32_t nextSpecId = 0;
    uint32_t specIdsLeft = 0;

    // Important events that only the batch's scopes refer to, held until the batch is written.
    static constexpr size_t heldImportantSize = 1024;
    uint8_t heldImportant[heldImportantSize];
    size_t heldImportantCursor = 0;

    void enterScope (uint64_t cycle, uint32_t specId) noexcept
    {
        writeVariable ((cycle - lastCycle) * 2 + 1);
        writeVariable (specId);
        lastCycle = cycle;
    }

    void leaveScope (uint64_t cycle) noexcept
    {
        writeVariable ((cycle - lastCycle) * 2);
        lastCycle = cycle;
    }

    bool isBatchFull() const noexcept           { return batchCursor >= batchSize; }

private:
    /** 7 bits a byte, the low bits first, the top bit set on all bytes but the last. The cursor
        is kept aside meanwhile: a byte written to the batch might be the cursor, as far as the
        compiler knows, which would make it reload the cursor after every byte. */
    void writeVariable (uint64_t value) noexcept
    {
        size_t cursor = batchCursor;
        while (value >= 0x80)
        {
            batch[cursor++] = (uint8_t) (value | 0x80);
            value >>= 7;
        }
        batch[cursor++] = (uint8_t) value;
        batchCursor = cursor;
    }
};

} // namespace tov
