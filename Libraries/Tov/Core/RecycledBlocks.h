#pragma once

#include <cstddef>
#include <memory>
#include <new>

namespace tov
{

/** Freed heap blocks of one size, kept by one thread for its next allocations of that size.

    Meant for a thread_local cache behind a class's operator new and delete (see
    ThreadRecycledBlocks), for objects that are made and deleted in bursts: the general
    allocator keeps only a handful of freed blocks of a size per thread, and a burst beyond
    them goes through its slow bins both ways. A block goes back to the general allocator when
    the cache is full, and every block it holds when the cache goes with its thread. Nothing is
    shared between threads, so nothing is locked.

    Under AddressSanitizer nothing is kept, so that a use after delete is still caught.
*/
class RecycledBlocks
{
public:
    static constexpr size_t defaultCapacity = 128;
   #if defined (__SANITIZE_ADDRESS__)
    static constexpr bool keepsBlocks = false;
   #else
    static constexpr bool keepsBlocks = true;
   #endif

    /** Room for capacity blocks, allocated once; none when that allocation fails. */
    explicit RecycledBlocks (size_t capacity = defaultCapacity);
    /** Frees the blocks kept. */
    ~RecycledBlocks();

    size_t getCapacity() const noexcept              { return capacity; }

    /** A kept block, or null when there is none. */
    void* take() noexcept                            { return numBlocks > 0 ? blocks[--numBlocks] : nullptr; }

    /** Keeps the block, or frees it when the cache is full. */
    void give (void* block) noexcept
    {
        if (keepsBlocks && numBlocks < capacity)
            blocks[numBlocks++] = block;
        else
            ::operator delete (block);
    }

private:
    std::unique_ptr<void*[]> blocks;
    size_t capacity = 0;
    size_t numBlocks = 0;

    RecycledBlocks (const RecycledBlocks&) = delete;
    RecycledBlocks& operator= (const RecycledBlocks&) = delete;
};

//==============================================================================
/** The blocks of class Owner that the calling thread deleted, kept for the next ones it makes:
    what Owner's operator new and delete call. Blocks of another size (a class derived from
    Owner) go to the general allocator.

    Each thread's cache is made on its first use, with room for capacity blocks. The pointer to
    it is read with the initial-exec model (one read through the thread pointer, a few bytes of
    static TLS) rather than through the loader on every use. When the thread ends, its cache
    goes and the pointer stays null: blocks deleted later in that thread's or the process's end
    go to the general allocator.
*/
template <class Owner, size_t capacity>
class ThreadRecycledBlocks
{
public:
    static void* allocate (size_t size)
    {
        if (size == sizeof (Owner))
            if (auto* blocks = get())
                if (auto* block = blocks->take())
                    return block;
        return ::operator new (size);
    }

    static void deallocate (void* block, size_t size) noexcept
    {
        auto* blocks = size == sizeof (Owner) ? get() : nullptr;
        if (blocks != nullptr)
            blocks->give (block);
        else
            ::operator delete (block);
    }

private:
    [[gnu::tls_model ("initial-exec")]] static inline thread_local RecycledBlocks* current = nullptr;
    [[gnu::tls_model ("initial-exec")]] static inline thread_local bool ended = false;

    static RecycledBlocks* get() noexcept
    {
        if (current == nullptr && ! ended)
            current = makeForThisThread();
        return current;
    }

    static RecycledBlocks* makeForThisThread() noexcept
    {
        struct Holder
        {
            RecycledBlocks blocks { capacity };
            ~Holder()
            {
                current = nullptr;
                ended = true;
            }
        };
        thread_local Holder holder;
        return &holder.blocks;
    }
};

} // namespace tov
