#pragma once

#include "UniqueIdentifier.h"
#include <cstdint>
#include <memory>

namespace tov
{

class Object;

/** The table of a space: identifier to object, holding no reference.

    Open addressing with linear probing over one array of identifier and object pairs, at
    most half full, so that a look-up usually reads one cache line: spaces are asked for
    an object at every mirrored change. The null identifier marks a free slot and never
    enters. An empty table allocates nothing, and emptying it gives its memory back.
*/
class ObjectTable
{
public:
    ObjectTable() = default;
    ObjectTable (const ObjectTable&) = delete;
    ObjectTable& operator= (const ObjectTable&) = delete;

    size_t size() const noexcept                     { return count; }

    /** The object of that identifier, or null; null for the null identifier. */
    Object* find (UniqueIdentifier identifier) const noexcept
    {
        if (identifier.isNull() || count == 0)
            return nullptr;
        for (size_t i = getHome (identifier.getInt64());; i = (i + 1) & mask)
        {
            if (slots[i].identifier == identifier.getInt64())
                return slots[i].object;
            if (slots[i].identifier == 0)
                return nullptr;
        }
    }

    /** Starts reading the slot where the identifier would stand, for a find or a set soon
        after: in a large table each of them is a cache miss otherwise. */
    void prefetch (UniqueIdentifier identifier) const noexcept
    {
        if (slots != nullptr)
            __builtin_prefetch (&slots[getHome (identifier.getInt64())]);
    }

    /** Enters the object under a non-null identifier, replacing what stood there. */
    void set (UniqueIdentifier identifier, Object* object);
    /** Takes the entry out; nothing when there is none. */
    void erase (UniqueIdentifier identifier) noexcept;
    void clear() noexcept;

    /** Calls function (identifier, object) for each entry, in no meaningful order. */
    template <class Function>
    void forEach (Function&& function) const
    {
        for (size_t i = 0; count != 0 && i <= mask; ++i)
            if (slots[i].identifier != 0)
                function (UniqueIdentifier (slots[i].identifier), slots[i].object);
    }

private:
    struct Slot
    {
        uint64_t identifier = 0;
        Object* object = nullptr;
    };

    std::unique_ptr<Slot[]> slots;
    size_t mask = 0;
    size_t count = 0;
    int shift = 64;

    // Fibonacci hashing: small consecutive identifiers spread as well as random ones.
    size_t getHome (uint64_t identifier) const noexcept { return (size_t) ((identifier * 0x9e3779b97f4a7c15ull) >> shift); }
    void grow();
};

} // namespace tov
