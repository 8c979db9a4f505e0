#pragma once

#include "WeakPointerStandIn.h"
#include <memory>
#include <vector>

namespace tov
{

/** Stands in for the map "Map({key=ObjectWeakPointer, value=Integer})" in which a space keeps
    the objects that mirroring must leave alone, until maps exist as reflected objects.

    Entries stay in the order they were added; each is a weak reference to an object and
    its life counter. What the counters mean is the space's business (see ObjectSpace.h).
*/
class MirroringExclusionListStandIn
{
public:
    size_t getNumEntries() const noexcept            { return entries.size(); }
    /** The object of an entry; null once it has been deinitialised or deleted. */
    Object* getObject (size_t index) const noexcept  { return entries[index].key->get(); }
    int getValue (size_t index) const noexcept       { return entries[index].value; }
    void setValue (size_t index, int value) noexcept { entries[index].value = value; }

    /** The index of the entry of that live object, or -1. */
    int find (const Object& object) const noexcept;
    void add (const Object& object, int value);
    void remove (size_t index);

private:
    struct Entry
    {
        std::unique_ptr<WeakPointerStandIn> key;
        int value;
    };

    std::vector<Entry> entries;
};

} // namespace tov
