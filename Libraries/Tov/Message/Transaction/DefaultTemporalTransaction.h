#pragma once

#include "TemporalTransaction.h"

namespace tov
{

/** A temporal transaction whose backup is a clone of its target. */
class DefaultTemporalTransaction : public TemporalTransaction
{
public:
    TOV_DECLARE_CLASS (DefaultTemporalTransaction, TemporalTransaction)

    DefaultTemporalTransaction() = default;
    ~DefaultTemporalTransaction() override;

    void storeBackup (const Object& target) override;
    void applyBackup (Object& target) const override;
    void clearBackup() override;

    /** The clone taken at the start, or null. */
    Object* getUndoValue() const noexcept            { return undoValue; }

private:
    Object* undoValue = nullptr;
};

} // namespace tov
