#include "DefaultTemporalTransaction.h"
#include "ScopedVolatileTransaction.h"

namespace tov
{

TOV_BEGIN_CLASS (TemporalTransaction)
TOV_END_CLASS()

TOV_BEGIN_CLASS (DefaultTemporalTransaction)
TOV_END_CLASS()

TemporalTransaction::TemporalTransaction()
{
    accessor.setParent (this);
    target.setParent (this);
    space.setParent (this);
}

void TemporalTransaction::startTemporalTransaction (const Accessor& newAccessor, const Object& newTarget)
{
    accessor.set (const_cast<Accessor*> (&newAccessor), false);
    target.set (const_cast<Object*> (&newTarget), false);
    storeBackup (newTarget);
    hasPreview = false;
    space.set (newTarget.getSpace(), false);
    // Nothing that comes in through the mirror may fight the preview.
    if (auto* targetSpace = newTarget.getSpace())
        targetSpace->addToMirroringExclusionList (newTarget, -1);
}

void TemporalTransaction::updateTemporalTransaction (const Object& value)
{
    auto* liveAccessor = accessor.get();
    auto* liveTarget = target.get();
    if (liveAccessor == nullptr || liveTarget == nullptr)
        return;
    liveAccessor->setTargetValue (*liveTarget, value, {}, nullptr);
    hasPreview = true;
}

// Cleaning up runs in every case, so that the backup goes also when the target has died.
void TemporalTransaction::resetTemporalTransaction (bool cleanup)
{
    auto* liveTarget = target.get();
    if (accessor.get() != nullptr && liveTarget != nullptr && hasPreview)
    {
        ScopedVolatileTransaction transaction (*liveTarget);
        applyBackup (*liveTarget);
        hasPreview = false;
    }
    if (cleanup)
        cleanupTemporalTransaction();
}

void TemporalTransaction::finalizeTemporalTransaction (const Object& value, const juce::String& description)
{
    auto* liveAccessor = accessor.get();
    auto* liveTarget = target.get();
    if (liveAccessor != nullptr && liveTarget != nullptr)
        liveAccessor->setTargetValue (*liveTarget, value, description, this);
    cleanupTemporalTransaction();
}

void TemporalTransaction::cleanupTemporalTransaction()
{
    if (auto* liveSpace = space.get())
    {
        // The exclusion now ends at the next mirroring update.
        if (auto* liveTarget = target.get())
            liveSpace->addToMirroringExclusionList (*liveTarget, 1);
        space.reset (false);
    }
    clearBackup();
}

//==============================================================================
DefaultTemporalTransaction::~DefaultTemporalTransaction()
{
    clearBackup();
}

void DefaultTemporalTransaction::storeBackup (const Object& backedUp)
{
    clearBackup();
    undoValue = backedUp.clone();
    if (undoValue != nullptr)
        undoValue->incrementReferenceCounter();
}

void DefaultTemporalTransaction::applyBackup (Object& restored) const
{
    if (undoValue != nullptr)
        Accessor::convertValue (*undoValue, restored);
}

void DefaultTemporalTransaction::clearBackup()
{
    if (undoValue != nullptr)
        undoValue->decrementReferenceCounter();
    undoValue = nullptr;
}

} // namespace tov
