#include "SelectionTemporalTransaction.h"

namespace tov
{

TOV_BEGIN_CLASS (SelectionTemporalTransaction)
TOV_END_CLASS()

SelectionTemporalTransaction::~SelectionTemporalTransaction()
{
    clearBackup();
}

void SelectionTemporalTransaction::storeBackup (const Object&)
{
    clearBackup();
    for (auto* target : targets)
        if (auto* clone = target->clone (target->getParent()))
        {
            clone->incrementReferenceCounter();
            backups[target] = clone;
        }
}

void SelectionTemporalTransaction::applyBackup (Object&) const
{
    for (auto& [target, clone] : backups)
        Accessor::convertValue (*clone, *target);
}

void SelectionTemporalTransaction::clearBackup()
{
    for (auto& backup : backups)
        backup.second->decrementReferenceCounter();
    backups.clear();
}

Object* SelectionTemporalTransaction::getBackup (const Object& target) const
{
    const auto found = backups.find (const_cast<Object*> (&target));
    return found != backups.end() ? found->second : nullptr;
}

} // namespace tov
