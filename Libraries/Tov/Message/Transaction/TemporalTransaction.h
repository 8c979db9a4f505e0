#pragma once

#include "../../Core/ObjectSpace.h"
#include "../../Pointer/ObjectWeakPointer.h"
#include "../../Pointer/WeakPointer.h"
#include "../../Standard/Accessor.h"

namespace tov
{

/** A live preview of a change, a drag for instance, that ends either as one ordinary transaction
    or as the value it started from.

    While the preview runs, its steps reach the other peer as volatile changes and the target is
    kept out of the mirror's way. Once the accessor or the target has died every operation does
    nothing, but the backup is still cleared at the end.

        startTemporalTransaction (accessor, target);
        updateTemporalTransaction (value);            // as often as the drag moves
        finalizeTemporalTransaction (value, "Move");  // one undo step from the start value
*/
class TemporalTransaction : public Object
{
public:
    TOV_DECLARE_CLASS (TemporalTransaction, Object)

    ~TemporalTransaction() override = default;

    /** Keeps a backup of the target and excludes it from mirroring until the end. */
    void startTemporalTransaction (const Accessor& accessor, const Object& target);
    /** Shows the value without an undo step. */
    void updateTemporalTransaction (const Object& value);
    /** Puts the backup back when a preview was shown; cleanup also ends the transaction. */
    void resetTemporalTransaction (bool cleanup);
    /** Sets the value as one undo step from the value the target had at the start, and ends. */
    void finalizeTemporalTransaction (const Object& value, const juce::String& description);

    virtual void storeBackup (const Object& target) = 0;
    virtual void applyBackup (Object& target) const = 0;
    virtual void clearBackup() = 0;

    bool hasPreviewValue() const noexcept            { return hasPreview; }
    Object* getTarget() const                        { return target.get(); }
    ObjectSpace* getSpace() const                    { return space.get(); }

protected:
    TemporalTransaction();

    /** Lets the mirror in again at its next update, and clears the backup in every case. */
    void cleanupTemporalTransaction();

private:
    WeakPointer<Accessor> accessor;
    ObjectWeakPointer target;
    WeakPointer<ObjectSpace> space;
    bool hasPreview = false;
};

} // namespace tov
