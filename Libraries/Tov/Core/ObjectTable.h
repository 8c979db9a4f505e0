#pragma once

#include "LinearProbingTable.h"
#include "UniqueIdentifier.h"

namespace tov
{

class Object;

/** The table of a space: identifier to object, holding no reference. Spaces are asked for an
    object at every mirrored change: see LinearProbingTable. The null identifier never enters.
*/
class ObjectTable
{
public:
    size_t size() const noexcept                     { return table.size(); }

    /** The object of that identifier, or null; null for the null identifier. */
    Object* find (UniqueIdentifier identifier) const noexcept
    {
        auto* found = table.find (identifier.getInt64());
        return found != nullptr ? *found : nullptr;
    }

    /** Fetches the slot of the identifier into the cache, for a set or find soon after. */
    void prefetch (UniqueIdentifier identifier) const noexcept  { table.prefetch (identifier.getInt64()); }

    /** Enters the object under a non-null identifier, replacing what stood there. */
    void set (UniqueIdentifier identifier, Object* object)
    {
        if (identifier.isNotNull())
            table[identifier.getInt64()] = object;
    }

    /** Takes the entry out; nothing when there is none. */
    void erase (UniqueIdentifier identifier) noexcept  { table.erase (identifier.getInt64()); }
    /** Empties the table and gives its memory back. */
    void clear() noexcept                            { table.clear(); }

    /** Calls function (identifier, object) for each entry, in no meaningful order. */
    template <class Function>
    void forEach (Function&& function) const
    {
        table.forEach ([&] (uint64_t identifier, Object* object) { function (UniqueIdentifier (identifier), object); });
    }

private:
    LinearProbingTable<uint64_t, Object*> table;
};

} // namespace tov
