#pragma once

#include "TemporalTransaction.h"
#include <map>
#include <vector>

namespace tov
{

/** A temporal transaction over several targets at once, the same variable in each member of a
    selection: its backup is a clone of every target, and resetting puts them all back.

    The accessor that makes it fills its targets (SelectionAccessor); they are not watched, and
    must outlive the preview.
*/
class SelectionTemporalTransaction : public TemporalTransaction
{
public:
    TOV_DECLARE_CLASS (SelectionTemporalTransaction, TemporalTransaction)

    SelectionTemporalTransaction() = default;
    ~SelectionTemporalTransaction() override;

    /** The objects that the preview changes. */
    std::vector<Object*>& getTargets() noexcept      { return targets; }
    const std::vector<Object*>& getTargets() const noexcept  { return targets; }

    /** Clones every target, whatever the argument, each clone having its target's parent. */
    void storeBackup (const Object& target) override;
    /** Puts each clone's value back into its target, as changes that the open scope hears. */
    void applyBackup (Object& target) const override;
    void clearBackup() override;

    /** The clone of that target, or null. */
    Object* getBackup (const Object& target) const;

private:
    std::vector<Object*> targets;
    std::map<Object*, Object*> backups;
};

} // namespace tov
