#include "ObjectTable.h"
#include <new>
#include <sys/mman.h>

namespace tov
{

void ObjectTable::set (UniqueIdentifier identifier, Object* object)
{
    if (identifier.isNull())
        return;
    if (slots == nullptr || (count + 1) * 2 > mask + 1)
        grow();
    size_t i = getHome (identifier.getInt64());
    while (slots[i].identifier != 0 && slots[i].identifier != identifier.getInt64())
        i = (i + 1) & mask;
    if (slots[i].identifier == 0)
        ++count;
    slots[i] = { identifier.getInt64(), object };
}

void ObjectTable::erase (UniqueIdentifier identifier) noexcept
{
    if (identifier.isNull() || count == 0)
        return;
    size_t hole = getHome (identifier.getInt64());
    while (slots[hole].identifier != identifier.getInt64())
    {
        if (slots[hole].identifier == 0)
            return;
        hole = (hole + 1) & mask;
    }

    // Backward shift: each following entry that may stand in the hole without passing its
    // home moves into it, so that no probe sequence is cut short and no tombstone is left.
    for (size_t next = (hole + 1) & mask; slots[next].identifier != 0; next = (next + 1) & mask)
    {
        const size_t home = getHome (slots[next].identifier);
        if (((next - home) & mask) >= ((next - hole) & mask))
        {
            slots[hole] = slots[next];
            hole = next;
        }
    }
    slots[hole] = {};
    --count;
}

void ObjectTable::clear() noexcept
{
    slots.reset();
    mask = 0;
    count = 0;
    shift = 64;
}

void ObjectTable::grow()
{
    const size_t oldCapacity = slots != nullptr ? mask + 1 : 0;
    const size_t newCapacity = oldCapacity != 0 ? oldCapacity * 2 : 16;
    auto oldSlots = std::move (slots);

    slots = allocateSlots (newCapacity);
    mask = newCapacity - 1;
    shift = 64 - __builtin_ctzll (newCapacity);
    count = 0;
    for (size_t i = 0; i < oldCapacity; ++i)
        if (oldSlots[i].identifier != 0)
            set (UniqueIdentifier (oldSlots[i].identifier), oldSlots[i].object);
}

// A slot array of at least a huge page starts on one, and asks for them: the processor then
// keeps the whole table in a few entries of its table of pages. Smaller ones start on a line.
ObjectTable::Slots ObjectTable::allocateSlots (size_t capacity)
{
    constexpr size_t hugePageSize = (size_t) 2 << 20;
    constexpr size_t lineSize = 64;
    const size_t bytes = capacity * sizeof (Slot);
    const bool huge = bytes >= hugePageSize;
    auto* memory = static_cast<Slot*> (std::aligned_alloc (huge ? hugePageSize : lineSize, bytes));
    if (memory == nullptr)
        throw std::bad_alloc();
    if (huge)
        madvise (memory, bytes, MADV_HUGEPAGE);
    std::uninitialized_value_construct_n (memory, capacity);
    return Slots (memory);
}

} // namespace tov
