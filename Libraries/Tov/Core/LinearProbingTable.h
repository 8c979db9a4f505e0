#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

namespace tov
{

namespace detail
{
/** Memory for the slots of a table: on a cache line, or from 2 MB up on a huge page and asking
    for huge pages, since the look-ups of a large table land anywhere in it. Throws
    std::bad_alloc, as new does. */
void* allocateTableSlots (size_t bytes);
void freeTableSlots (void* memory) noexcept;
} // namespace detail

/** A map from integer or address keys to values, for the tables that are asked once per change
    (the identifiers of a space, the objects an edit touched).

    Open addressing with linear probing over one array of key and value pairs, at most half
    full, so that a look-up usually reads one cache line. The key's zero (0, null) marks a free
    slot and never enters. Keys are spread by Fibonacci hashing of their bits, so that small
    consecutive identifiers, and allocations of equal sizes at regular distances, spread as
    well as random ones. Erasing shifts the following entries back instead of leaving
    tombstones. An empty table allocates nothing. The order of the entries means nothing.
    Value must be default-constructible and movable without throwing; a free slot holds a
    default value.
*/
template <class Key, class Value>
class LinearProbingTable
{
    static_assert (std::is_integral_v<Key> || std::is_pointer_v<Key>, "keys are integers or addresses");
    static_assert (std::is_nothrow_move_assignable_v<Value>, "erasing moves values without throwing");

public:
    LinearProbingTable() = default;
    ~LinearProbingTable()                            { clear(); }
    LinearProbingTable (const LinearProbingTable&) = delete;
    LinearProbingTable& operator= (const LinearProbingTable&) = delete;
    /** Takes the other's entries and array, and leaves it empty. */
    LinearProbingTable (LinearProbingTable&& other) noexcept  { *this = std::move (other); }
    LinearProbingTable& operator= (LinearProbingTable&& other) noexcept
    {
        if (this != &other)
        {
            clear();
            slots = std::exchange (other.slots, nullptr);
            mask = std::exchange (other.mask, 0);
            count = std::exchange (other.count, 0);
            shift = std::exchange (other.shift, 64);
        }
        return *this;
    }

    size_t size() const noexcept                     { return count; }
    bool empty() const noexcept                      { return count == 0; }
    /** The number of entries the table holds before it grows. */
    size_t getCapacity() const noexcept              { return slots != nullptr ? (mask + 1) / 2 : 0; }

    /** The value of the key, or null; null for the free key. */
    Value* find (Key key) const noexcept
    {
        if (key == Key() || count == 0)
            return nullptr;
        for (size_t i = getHome (key);; i = (i + 1) & mask)
        {
            if (slots[i].key == key)
                return &slots[i].value;
            if (slots[i].key == Key())
                return nullptr;
        }
    }

    /** The value of a key other than the free one, entered with a default value when absent. */
    Value& operator[] (Key key)
    {
        if (auto* found = find (key))
            return *found;
        if (slots == nullptr || (count + 1) * 2 > mask + 1)
            grow();
        return enter (key).value;
    }

    /** Takes the entry out; nothing when there is none. */
    void erase (Key key) noexcept
    {
        if (key == Key() || count == 0)
            return;
        size_t hole = getHome (key);
        while (slots[hole].key != key)
        {
            if (slots[hole].key == Key())
                return;
            hole = (hole + 1) & mask;
        }
        // Backward shift: each following entry that may stand in the hole without passing its
        // home moves into it, so that no probe sequence is cut short.
        for (size_t next = (hole + 1) & mask; slots[next].key != Key(); next = (next + 1) & mask)
        {
            const size_t home = getHome (slots[next].key);
            if (((next - home) & mask) >= ((next - hole) & mask))
            {
                slots[hole] = std::move (slots[next]);
                hole = next;
            }
        }
        slots[hole] = Slot();
        --count;
    }

    /** Fetches the slot where the key is or would go into the cache, for a look-up soon after:
        keys spread at random, so each look-up reads a line of its own. */
    void prefetch (Key key) const noexcept
    {
        if (slots != nullptr)
            __builtin_prefetch (&slots[getHome (key)], 1);
    }

    /** Empties the table and keeps its array, for a table about to be filled as much again. */
    void removeAll()
    {
        for (size_t i = 0; count != 0 && i <= mask; ++i)
            if (slots[i].key != Key())
                slots[i] = Slot();
        count = 0;
    }

    /** Empties the table and gives its array back. */
    void clear() noexcept
    {
        release (slots, slots != nullptr ? mask + 1 : 0);
        slots = nullptr;
        mask = 0;
        count = 0;
        shift = 64;
    }

    /** Calls function (key, value) for each entry. */
    template <class Function>
    void forEach (Function&& function) const
    {
        for (size_t i = 0; count != 0 && i <= mask; ++i)
            if (slots[i].key != Key())
                function (slots[i].key, slots[i].value);
    }

private:
    struct Slot
    {
        Key key = Key();
        Value value = Value();
    };

    Slot* slots = nullptr;
    size_t mask = 0;
    size_t count = 0;
    int shift = 64;

    size_t getHome (Key key) const noexcept          { return (size_t) ((toBits (key) * 0x9e3779b97f4a7c15ull) >> shift); }

    static uint64_t toBits (Key key) noexcept
    {
        if constexpr (std::is_pointer_v<Key>)
            return (uint64_t) reinterpret_cast<uintptr_t> (key);
        else
            return (uint64_t) key;
    }

    /** The slot of a key that is absent, in an array with room for it. */
    Slot& enter (Key key) noexcept
    {
        size_t i = getHome (key);
        while (slots[i].key != Key())
            i = (i + 1) & mask;
        ++count;
        slots[i].key = key;
        return slots[i];
    }

    void grow()
    {
        const size_t oldCapacity = slots != nullptr ? mask + 1 : 0;
        const size_t newCapacity = oldCapacity != 0 ? oldCapacity * 2 : 16;
        auto* newSlots = static_cast<Slot*> (detail::allocateTableSlots (newCapacity * sizeof (Slot)));
        std::uninitialized_value_construct_n (newSlots, newCapacity);

        Slot* oldSlots = std::exchange (slots, newSlots);
        mask = newCapacity - 1;
        shift = 64 - __builtin_ctzll (newCapacity);
        count = 0;
        for (size_t i = 0; i < oldCapacity; ++i)
            if (oldSlots[i].key != Key())
                enter (oldSlots[i].key).value = std::move (oldSlots[i].value);
        release (oldSlots, oldCapacity);
    }

    static void release (Slot* array, size_t capacity) noexcept
    {
        if (array == nullptr)
            return;
        std::destroy_n (array, capacity);
        detail::freeTableSlots (array);
    }
};

} // namespace tov
