#include "MirroringExclusionListStandIn.h"

namespace tov
{

int MirroringExclusionListStandIn::find (const Object& object) const noexcept
{
    for (size_t i = 0; i < entries.size(); ++i)
        if (entries[i].key->get() == &object)
            return (int) i;
    return -1;
}

void MirroringExclusionListStandIn::add (const Object& object, int value)
{
    // Weak references watch their target, which needs the target's view list.
    entries.push_back ({ std::make_unique<WeakPointerStandIn> (const_cast<Object&> (object)), value });
}

void MirroringExclusionListStandIn::remove (size_t index)
{
    entries.erase (entries.begin() + (std::ptrdiff_t) index);
}

} // namespace tov
