#include "ProtectAgainstDeletion.h"

namespace tov
{

ProtectAgainstDeletion::ProtectAgainstDeletion (Object& object)
{
    for (Object* candidate = &object; candidate != nullptr; candidate = candidate->getParent())
    {
        if (candidate->isReferenceCounted() && candidate->getReferenceCount() > 0)
        {
            holder = candidate;
            holder->incrementReferenceCounter();
            return;
        }
    }
}

ProtectAgainstDeletion::~ProtectAgainstDeletion()
{
    if (holder != nullptr)
        holder->decrementReferenceCounter (true);
}

} // namespace tov
