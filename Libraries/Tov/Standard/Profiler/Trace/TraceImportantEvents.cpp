#include "TraceImportantEvents.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace tov
{

/** A page: writers reserve with an atomic add on `reserved` and count what they wrote in
    `committed`. The one reservation that reaches past the capacity closes the page: it notes
    where the page ends and links the next one; the others that reach past it wait for that
    link and go on to the next page. */
struct TraceImportantEvents::Page
{
    explicit Page (uint32_t capacity) : capacity (capacity), end (capacity), data (new uint8_t[capacity]) {}

    const uint32_t capacity;
    std::atomic<uint32_t> reserved { 0 };
    std::atomic<uint32_t> committed { 0 };
    std::atomic<uint32_t> end;
    std::atomic<Page*> next { nullptr };
    uint32_t sent = 0;                      // the worker's
    std::unique_ptr<uint8_t[]> data;
};

TraceImportantEvents::TraceImportantEvents()
    : current (new Page (pageSize))
{
    drainHead = current.load();
}

TraceImportantEvents::~TraceImportantEvents()
{
    for (Page* page = drainHead; page != nullptr;)
    {
        Page* next = page->next.load();
        delete page;
        page = next;
    }
    for (Page* page : drainedPages)
        delete page;
}

void TraceImportantEvents::write (const uint8_t* event, size_t size)
{
    writersInside.fetch_add (1, std::memory_order_seq_cst);
    while (! tryWrite (current.load (std::memory_order_seq_cst), event, (uint32_t) size))
    {
    }
    writersInside.fetch_sub (1, std::memory_order_release);
}

bool TraceImportantEvents::tryWrite (Page* page, const uint8_t* event, uint32_t size)
{
    const uint32_t position = page->reserved.fetch_add (size, std::memory_order_relaxed);
    if (position + size <= page->capacity)
    {
        std::memcpy (page->data.get() + position, event, size);
        page->committed.fetch_add (size, std::memory_order_release);
        return true;
    }
    if (position <= page->capacity)
    {
        // The page is ours to close. Its successor is current before it is linked, so that the
        // worker, which frees only linked pages, frees none that a new writer can find.
        page->end.store (position, std::memory_order_relaxed);
        Page* next = new Page (std::max (pageSize, size));
        current.store (next, std::memory_order_seq_cst);
        page->next.store (next, std::memory_order_release);
        return false;
    }
    while (current.load (std::memory_order_seq_cst) == page)
        std::this_thread::yield();
    return false;
}

void TraceImportantEvents::drain (const std::function<void (const uint8_t*, size_t)>& send, bool shouldKeepInCache)
{
    for (;;)
    {
        Page* page = drainHead;
        // What was written is read before what was reserved: when the two agree, every
        // reservation made so far is written (a later one could only make the first count larger).
        const uint32_t committed = page->committed.load (std::memory_order_seq_cst);
        Page* next = page->next.load (std::memory_order_acquire);
        const uint32_t reserved = next != nullptr ? page->end.load (std::memory_order_relaxed)
                                                  : std::min (page->reserved.load (std::memory_order_seq_cst), page->capacity);
        if (committed != reserved)
            break;
        if (reserved > page->sent)
        {
            send (page->data.get() + page->sent, reserved - page->sent);
            if (shouldKeepInCache)
                keepInCache (page->data.get() + page->sent, reserved - page->sent);
            page->sent = reserved;
        }
        if (next == nullptr)
            break;
        drainedPages.push_back (page);
        drainHead = next;
    }
    freeDrainedPages();
}

// A writer inside write() may still hold a drained page; one that enters later finds only
// pages that are current or newer.
void TraceImportantEvents::freeDrainedPages()
{
    if (drainedPages.empty() || writersInside.load (std::memory_order_seq_cst) != 0)
        return;
    for (Page* page : drainedPages)
        delete page;
    drainedPages.clear();
}

// Runs are kept whole with their size before them, each within one block.
void TraceImportantEvents::keepInCache (const uint8_t* data, size_t size)
{
    const size_t needed = sizeof (uint32_t) + size;
    if (cacheBlockUsed + needed > cacheBlockSize)
    {
        cacheBlocks.push_back (std::make_unique<uint8_t[]> (std::max (cacheBlockSize, needed)));
        cacheBlockUsed = 0;
    }
    uint8_t* destination = cacheBlocks.back().get() + cacheBlockUsed;
    const auto size32 = (uint32_t) size;
    std::memcpy (destination, &size32, sizeof (size32));
    std::memcpy (destination + sizeof (size32), data, size);
    cacheBlockUsed += needed;      // a new block is all zeros: a size of 0 ends it
}

void TraceImportantEvents::sendCache (const std::function<void (const uint8_t*, size_t)>& send) const
{
    for (const auto& block : cacheBlocks)
    {
        size_t offset = 0;
        while (offset + sizeof (uint32_t) <= cacheBlockSize)
        {
            uint32_t size = 0;
            std::memcpy (&size, block.get() + offset, sizeof (size));
            if (size == 0)
                break;
            send (block.get() + offset + sizeof (size), size);
            offset += sizeof (size) + size;
        }
    }
}

} // namespace tov
