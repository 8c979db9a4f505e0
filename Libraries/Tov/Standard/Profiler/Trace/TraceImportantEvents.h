#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace tov
{

/** The events that every connection needs, whenever it comes (event specs, thread names,
    counters): not in a thread's buffers but in shared pages of 1024 bytes, a chain, which any
    thread fills by an atomic add on the page's cursor. An event larger than a page gets a page
    of its own size.

    The worker drains the pages, and keeps what it drained in a cache of 65536-byte blocks for
    connections yet to come. A drained page is freed once no writer is inside write(): a writer
    counts itself in while it may hold the address of a page.
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

    static constexpr uint32_t pageSize = 1024;
    static constexpr size_t cacheBlockSize = 65536;

private:
    struct Page;

    std::atomic<Page*> current;
    std::atomic<int> writersInside { 0 };
    Page* drainHead;                                // the worker's, as are the two below
    std::vector<Page*> drainedPages;
    std::vector<std::unique_ptr<uint8_t[]>> cacheBlocks;
    size_t cacheBlockUsed = cacheBlockSize;

    bool tryWrite (Page* page, const uint8_t* event, uint32_t size);
    void keepInCache (const uint8_t* data, size_t size);
    void freeDrainedPages();
};

} // namespace tov
