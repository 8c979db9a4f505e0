#include "CompositeTransaction.h"
#include "ChildTransactionsScope.h"
#include "UpdateObjectMirroredTransaction.h"
#include "../Envelop.h"
#include "../../Core/CachedDynamicCast.h"
#include "../../Core/ObjectSpace.h"

namespace tov
{

namespace
{
/** Children lie apart on the heap, and each one looks its object up in the space's table: two
    cache misses per child, in a long composite. Both are started some children ahead of their
    turn: the child itself furthest ahead, then, once it is at hand, the slot of its object, on
    the guess that the object lives in the composite's space (a wrong guess fetches for nothing).
*/
class ChildrenFetchedAhead
{
public:
    ChildrenFetchedAhead (const OwnedVector<Transaction>& children, const ObjectSpace* space)
        : children (children), space (space) {}

    /** Before the child of that index runs, in that direction. Indices before the first wrap
        around to values above the last, and are left out as those are. */
    void before (size_t index, bool backwards) const
    {
        fetchChild (backwards ? index - childDistance : index + childDistance);
        fetchObjectOf (backwards ? index - objectDistance : index + objectDistance);
    }

private:
    static constexpr size_t childDistance = 16, objectDistance = 8, lineSize = 64;
    const OwnedVector<Transaction>& children;
    const ObjectSpace* space;

    // The lines of the usual child, a change.
    void fetchChild (size_t index) const
    {
        if (index >= children.size())
            return;
        const auto* bytes = reinterpret_cast<const char*> (children[index]);
        for (size_t offset = 0; offset < sizeof (UpdateObjectMirroredTransaction); offset += lineSize)
            __builtin_prefetch (bytes + offset);
    }

    void fetchObjectOf (size_t index) const
    {
        if (index >= children.size() || space == nullptr)
            return;
        if (auto* mirrored = cachedDynamicCast<MirroredTransaction> (*children[index]))
            space->prefetchObject (mirrored->getPointer().getAddress().getRootUniqueIdentifier());
    }
};
} // namespace

TOV_BEGIN_CLASS (CompositeTransaction)
    TOV_VARIABLE (transactions)
TOV_END_CLASS()

// Most children add one message; nested composites leave the room to the outermost one.
void CompositeTransaction::reserveMessages (Envelop& envelop) const
{
    if (envelop.getNumMessages() == 0)
        envelop.reserveMessages (transactions.size());
}

void CompositeTransaction::perform (Envelop& envelop)
{
    reserveMessages (envelop);
    ChildTransactionsScope scope (transactions);
    const ChildrenFetchedAhead fetcher (transactions, getSpace());
    for (size_t i = 0; i < transactions.size(); ++i)
    {
        fetcher.before (i, false);
        transactions[i]->perform (envelop);
    }
}

// Backwards, so that objects destroyed last are back before their containers take older states.
void CompositeTransaction::undo (Envelop& envelop)
{
    reserveMessages (envelop);
    ChildTransactionsScope scope (transactions);
    const ChildrenFetchedAhead fetcher (transactions, getSpace());
    for (size_t i = transactions.size(); i-- > 0;)
    {
        fetcher.before (i, true);
        transactions[i]->undo (envelop);
    }
}

void CompositeTransaction::redo (Envelop& envelop)
{
    reserveMessages (envelop);
    ChildTransactionsScope scope (transactions);
    const ChildrenFetchedAhead fetcher (transactions, getSpace());
    for (size_t i = 0; i < transactions.size(); ++i)
    {
        fetcher.before (i, false);
        transactions[i]->redo (envelop);
    }
}

juce::String CompositeTransaction::toString() const
{
    return getDescription().isEmpty() ? juce::String ("Composite Transaction") : getDescription();
}

} // namespace tov
