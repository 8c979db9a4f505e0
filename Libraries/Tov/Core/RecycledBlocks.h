#pragma once

#include <array>
#include <cstddef>
#include <new>

namespace tov
{

/** Freed heap blocks of one size, kept by one thread for its next allocations of that size.

    Meant for a thread_local cache behind a class's operator new and delete, for objects that
    are made and deleted in bursts: the general allocator keeps only a handful of freed blocks
    of a size per thread, and a burst beyond them goes through its slow bins both ways. A block
    goes back to the general allocator when the cache is full, and every block it holds when
    the cache goes with its thread. Nothing is shared between threads, so nothing is locked.

    Under AddressSanitizer nothing is kept, so that a use after delete is still caught.
*/
class RecycledBlocks
{
public:
    static constexpr size_t capacity = 128;
   #if defined (__SANITIZE_ADDRESS__)
    static constexpr bool keepsBlocks = false;
   #else
    static constexpr bool keepsBlocks = true;
   #endif

    RecycledBlocks() = default;
    /** Frees the blocks kept. */
    ~RecycledBlocks();

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
    std::array<void*, capacity> blocks {};
    size_t numBlocks = 0;

    RecycledBlocks (const RecycledBlocks&) = delete;
    RecycledBlocks& operator= (const RecycledBlocks&) = delete;
};

} // namespace tov
