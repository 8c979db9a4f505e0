#include "TraceImportantEvents.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace tov
{

/** A page: writers reserve room in it through the cursor, and count what they wrote in
    `committed`. The writer that swaps the next page in closes the page: it notes where the page
    ends, then links the next one (and before it, a page of the writer's own, whole, if it has
    one). The bytes of a page are in the page itself, so that a new page is one allocation, and
    are left uninitialised (a page is made by new Page, not new Page()). */
struct TraceImportantEvents::Page
{
    Page() = default;
    Page (const uint8_t* event, size_t size)
        : committed ((uint32_t) size), end ((uint32_t) size), whole (new uint8_t[size])
    {
        std::memcpy (whole.get(), event, size);
    }

    const uint8_t* getData() const noexcept     { return whole != nullptr ? whole.get() : data; }

    std::atomic<Page*> next { nullptr };
    std::atomic<uint32_t> committed { 0 };
    uint32_t end = 0;                           // set before the link to the next page
    uint32_t sent = 0;                          // the worker's
    std::unique_ptr<uint8_t[]> whole;           // an event larger than a page
    uint8_t data[pageSize];
};

// Pointers of user space fit in 48 bits, which leaves the top 16 for the bytes reserved.
uint64_t TraceImportantEvents::makeCursor (Page* page, uint32_t reserved) noexcept
{
    return reinterpret_cast<uint64_t> (page) | ((uint64_t) reserved << 48);
}

TraceImportantEvents::Page* TraceImportantEvents::getPage (uint64_t cursor) noexcept
{
    return reinterpret_cast<Page*> (cursor & 0xffffffffffffull);
}

uint32_t TraceImportantEvents::getReserved (uint64_t cursor) noexcept
{
    return (uint32_t) (cursor >> 48);
}

TraceImportantEvents::TraceImportantEvents()
    : cursor (makeCursor (new Page, 0))
{
    drainHead = getPage (cursor.load());
}

TraceImportantEvents::~TraceImportantEvents()
{
    for (Page* page = drainHead; page != nullptr;)
    {
        Page* next = page->next.load();
        delete page;
        page = next;
    }
}

void TraceImportantEvents::write (const uint8_t* event, size_t size)
{
    uint64_t seen = cursor.load (std::memory_order_acquire);
    if (size > pageSize)
    {
        auto own = std::make_unique<Page> (event, size);
        while (! tryClose (seen, own.get()))
        {
        }
        own.release();
        return;
    }
    while (! tryReserve (seen, (uint32_t) size))
        if (getReserved (seen) + size > pageSize)
            tryClose (seen, nullptr);
    Page* page = getPage (seen);
    const uint32_t offset = getReserved (seen);
    std::memcpy (page->data + offset, event, size);
    page->committed.fetch_add ((uint32_t) size, std::memory_order_release);
}

// On success, seen is the cursor just before the room was reserved; on failure, the cursor now.
bool TraceImportantEvents::tryReserve (uint64_t& seen, uint32_t size) noexcept
{
    if (getReserved (seen) + size > pageSize)
        return false;
    return cursor.compare_exchange_weak (seen, seen + ((uint64_t) size << 48), std::memory_order_acquire, std::memory_order_acquire);
}

// The page seen is full: the one writer that swaps a new page in closes it at what was reserved,
// and links behind it its own page, if it has one, then the new page. Seen is the cursor now.
bool TraceImportantEvents::tryClose (uint64_t& seen, Page* ownPage)
{
    std::unique_ptr<Page> fresh (new Page);
    const uint64_t freshCursor = makeCursor (fresh.get(), 0);
    if (! cursor.compare_exchange_strong (seen, freshCursor, std::memory_order_acq_rel, std::memory_order_acquire))
        return false;
    Page* closed = getPage (seen);
    closed->end = getReserved (seen);
    Page* behindClosed = fresh.release();
    if (ownPage != nullptr)
    {
        ownPage->next.store (behindClosed, std::memory_order_relaxed);
        behindClosed = ownPage;
    }
    closed->next.store (behindClosed, std::memory_order_release);
    seen = freshCursor;
    return true;
}

// A page is sent up to what was reserved in it once all of that was written; a page that is
// linked to the next one is closed, and is freed once sent whole: no writer will touch it again.
void TraceImportantEvents::drain (const std::function<void (const uint8_t*, size_t)>& send, bool shouldKeepInCache)
{
    for (;;)
    {
        Page* page = drainHead;
        // What was written is read before what was reserved: when the two agree, every
        // reservation made so far is written (a later one could only make the first count larger).
        const uint32_t committed = page->committed.load (std::memory_order_seq_cst);
        Page* next = page->next.load (std::memory_order_acquire);
        uint32_t reserved = 0;
        if (next != nullptr)
        {
            reserved = page->end;
        }
        else
        {
            const uint64_t now = cursor.load (std::memory_order_seq_cst);
            if (getPage (now) != page)
                break;          // closed, and not yet linked
            reserved = getReserved (now);
        }
        if (committed != reserved)
            break;
        if (reserved > page->sent)
        {
            send (page->getData() + page->sent, reserved - page->sent);
            if (shouldKeepInCache)
                keepInCache (page->getData() + page->sent, reserved - page->sent);
            page->sent = reserved;
        }
        if (next == nullptr)
            break;
        drainHead = next;
        delete page;
    }
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
