#include "LinearProbingTable.h"
#include <cstdlib>
#include <new>
#include <sys/mman.h>

namespace tov::detail
{

// With huge pages the processor keeps a whole large table in a few entries of its table of
// pages, instead of walking the page tables at each look-up.
void* allocateTableSlots (size_t bytes)
{
    constexpr size_t hugePageSize = (size_t) 2 << 20;
    constexpr size_t lineSize = 64;
    const size_t alignment = bytes >= hugePageSize ? hugePageSize : lineSize;
    void* memory = std::aligned_alloc (alignment, (bytes + alignment - 1) / alignment * alignment);
    if (memory == nullptr)
        throw std::bad_alloc();
    if (alignment == hugePageSize)
        madvise (memory, bytes, MADV_HUGEPAGE);
    return memory;
}

void freeTableSlots (void* memory) noexcept
{
    std::free (memory);
}

} // namespace tov::detail
