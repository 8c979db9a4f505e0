#pragma once

#include "UniqueIdentifier.h"
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace tov
{

class Object;

/** The table of a space: identifier to object, holding no reference.

    Open addressing with linear probing over one array of identifier and object pairs, at
    most half full, so that a look-up usually reads one cache line: spaces are asked for
    an object at every mirrored change. The null identifier marks a free slot and never
    enters. An empty table allocates nothing, and emptying it gives its memory back. A table of
    2 MB or more lies in huge pages, since its look-ups land anywhere in it.
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

    /** Fetches the slot where the identifier is or would go into the cache, for a set or find
        soon after: identifiers are random, so each of those reads a line of its own. */
    void prefetch (UniqueIdentifier identifier) const noexcept
    {
        if (slots != nullptr)
            __builtin_prefetch (&slots[getHome (identifier.getInt64())], 1);
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

    struct FreeSlots
    {
        void operator() (Slot* memory) const noexcept   { std::free (memory); }
    };
    using Slots = std::unique_ptr<Slot[], FreeSlots>;

    Slots slots;
    size_t mask = 0;
    size_t count = 0;
    int shift = 64;

    // Fibonacci hashing: small consecutive identifiers spread as well as random ones.
    size_t getHome (uint64_t identifier) const noexcept { return (size_t) ((identifier * 0x9e3779b97f4a7c15ull) >> shift); }
    void grow();
    static Slots allocateSlots (size_t capacity);
};

} // namespace tov
