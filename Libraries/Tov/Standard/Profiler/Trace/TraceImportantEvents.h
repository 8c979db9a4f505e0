#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace tov
{

/** The events that every connection needs, whenever it comes (event specs, thread names,
    counters): not in a thread's buffers but in shared pages of 8192 bytes, a chain, which any
    thread fills by reserving room on the current page. The "EventSpec"s of a thread's scopes
    come in runs, one per batch of scopes (see TraceWriter::writeImportantOfScopes). An event larger than a page gets a page
    of its own, linked behind the current one, which it closes.

    The current page and how much of it is reserved are one word, so that a writer reserves its
    room with one compare-and-swap, which also tells it that the page was still current: a
    writer touches no page but the one it reserved in, and that one only until it has counted
    what it wrote in the page's committed bytes.

    The worker drains the pages, and keeps what it drained in a cache of 65536-byte blocks for
    connections yet to come. A page is freed as soon as it is drained whole: it is closed, and
    all that was reserved in it was written.
*/
class TraceImportantEvents
{
public:
    TraceImportantEvents();
    ~TraceImportantEvents();

    /** From any thread: the event's bytes, whole. */
    void write (const uint8_t* event, size_t size);

    /** The worker's: hands every complete run of events to send, in order of writing, and keeps
        them in the cache when it is on. */
    void drain (const std::function<void (const uint8_t*, size_t)>& send, bool keepInCache);
    /** The worker's: hands the cache, run by run, to send. */
    void sendCache (const std::function<void (const uint8_t*, size_t)>& send) const;

    size_t getCacheSize() const noexcept            { return cacheBlocks.size() * cacheBlockSize; }

    static constexpr uint32_t pageSize = 8192;     // the reserved bytes must fit in 16 bits
    static constexpr size_t cacheBlockSize = 65536;

private:
    struct Page;

    std::atomic<uint64_t> cursor;                   // the current page, and its bytes reserved in the top 16 bits
    Page* drainHead;                                // the worker's, as are the two below
    std::vector<std::unique_ptr<uint8_t[]>> cacheBlocks;
    size_t cacheBlockUsed = cacheBlockSize;

    bool tryReserve (uint64_t& seen, uint32_t size) noexcept;
    bool tryClose (uint64_t& seen, Page* ownPage);
    void keepInCache (const uint8_t* data, size_t size);

    static uint64_t makeCursor (Page* page, uint32_t reserved) noexcept;
    static Page* getPage (uint64_t cursor) noexcept;
    static uint32_t getReserved (uint64_t cursor) noexcept;
};

} // namespace tov
