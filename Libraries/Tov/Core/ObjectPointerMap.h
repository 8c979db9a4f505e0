#pragma once

#include <cstdint>
#include <memory>
#include <utility>

namespace tov
{

class Object;

/** A map from object addresses to values, for tables that are asked once per change.

    Open addressing with linear probing over one array of key and value pairs, at most half
    full, like ObjectTable: a look-up usually reads one cache line, and entering a key
    allocates nothing until the array has to grow. The null address marks a free slot and
    never enters. The order of the entries means nothing. Value must be default-constructible;
    a free slot holds a default value.
*/
template <class Value>
class ObjectPointerMap
{
public:
    ObjectPointerMap() = default;
    ObjectPointerMap (const ObjectPointerMap&) = delete;
    ObjectPointerMap& operator= (const ObjectPointerMap&) = delete;
    /** Takes the other's entries and array, and leaves it empty. */
    ObjectPointerMap (ObjectPointerMap&& other) noexcept  { *this = std::move (other); }
    ObjectPointerMap& operator= (ObjectPointerMap&& other) noexcept
    {
        slots = std::move (other.slots);
        mask = std::exchange (other.mask, 0);
        count = std::exchange (other.count, 0);
        shift = std::exchange (other.shift, 64);
        return *this;
    }

    size_t size() const noexcept                     { return count; }
    bool empty() const noexcept                      { return count == 0; }

    /** The value of the key, or null. */
    Value* find (const Object* key) const noexcept
    {
        if (key == nullptr || count == 0)
            return nullptr;
        for (size_t i = getHome (key);; i = (i + 1) & mask)
        {
            if (slots[i].first == key)
                return &slots[i].second;
            if (slots[i].first == nullptr)
                return nullptr;
        }
    }

    /** The value of a non-null key, entered with a default value when absent. */
    Value& operator[] (const Object* key)
    {
        if (auto* found = find (key))
            return *found;
        if (slots == nullptr || (count + 1) * 2 > mask + 1)
            grow();
        size_t i = getHome (key);
        while (slots[i].first != nullptr)
            i = (i + 1) & mask;
        ++count;
        slots[i].first = key;
        return slots[i].second;
    }

    /** Takes the entry out; nothing when there is none. */
    void erase (const Object* key)
    {
        if (key == nullptr || count == 0)
            return;
        size_t hole = getHome (key);
        while (slots[hole].first != key)
        {
            if (slots[hole].first == nullptr)
                return;
            hole = (hole + 1) & mask;
        }
        // Backward shift, as in ObjectTable: no tombstones, no probe sequence cut short.
        for (size_t next = (hole + 1) & mask; slots[next].first != nullptr; next = (next + 1) & mask)
        {
            const size_t home = getHome (slots[next].first);
            if (((next - home) & mask) >= ((next - hole) & mask))
            {
                slots[hole] = std::move (slots[next]);
                hole = next;
            }
        }
        slots[hole] = Slot();
        --count;
    }

    /** Empties the map and keeps its array, for a map about to be filled as much again. */
    void removeAll()
    {
        for (size_t i = 0; count != 0 && i <= mask; ++i)
            if (slots[i].first != nullptr)
                slots[i] = Slot();
        count = 0;
    }

    /** The number of entries the map holds before it grows. */
    size_t getCapacity() const noexcept              { return slots != nullptr ? (mask + 1) / 2 : 0; }

    void clear() noexcept
    {
        slots.reset();
        mask = 0;
        count = 0;
        shift = 64;
    }

private:
    using Slot = std::pair<const Object*, Value>;

    std::unique_ptr<Slot[]> slots;
    size_t mask = 0;
    size_t count = 0;
    int shift = 64;

    // Fibonacci hashing of the address: allocations of equal sizes sit at regular distances.
    size_t getHome (const Object* key) const noexcept
    {
        return (size_t) (((uint64_t) reinterpret_cast<uintptr_t> (key) * 0x9e3779b97f4a7c15ull) >> shift);
    }

    void grow()
    {
        const size_t oldCapacity = slots != nullptr ? mask + 1 : 0;
        const size_t newCapacity = oldCapacity != 0 ? oldCapacity * 2 : 16;
        auto oldSlots = std::move (slots);
        slots = std::make_unique<Slot[]> (newCapacity);
        mask = newCapacity - 1;
        shift = 64 - __builtin_ctzll (newCapacity);
        for (size_t i = 0; i < oldCapacity; ++i)
        {
            if (oldSlots[i].first == nullptr)
                continue;
            size_t j = getHome (oldSlots[i].first);
            while (slots[j].first != nullptr)
                j = (j + 1) & mask;
            slots[j] = std::move (oldSlots[i]);
        }
    }
};

} // namespace tov
