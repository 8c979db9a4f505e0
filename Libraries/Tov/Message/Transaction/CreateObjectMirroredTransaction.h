#pragma once

#include "MirroredTransaction.h"

namespace tov
{

/** The creation of an object. Its state is read when first performed, so that it holds what the
    object became by the end of the edit. Undo does nothing here: the object leaves through the
    state of the container or pointer that holds it, which an update in the same composite records.
*/
class CreateObjectMirroredTransaction : public MirroredTransaction
{
public:
    TOV_DECLARE_CLASS (CreateObjectMirroredTransaction, MirroredTransaction)

    CreateObjectMirroredTransaction() = default;
    explicit CreateObjectMirroredTransaction (Object& object) : MirroredTransaction (object) {}

    void perform (Envelop& envelop) override;
    void undo (Envelop&) override                    {}
    void redo (Envelop& envelop) override;

    const std::shared_ptr<State>& getState() const noexcept  { return state; }

    /** The name; without one "Create Object" before the state is read, then "Create " + class
        expression + short text + identifier. */
    juce::String toString() const override;

private:
    std::shared_ptr<State> state;
};

} // namespace tov
