#pragma once

#include "MirroredTransaction.h"

namespace tov
{

/** The destruction of an object, with its deep state. Performing does nothing: the object goes
    with the state of its holder. Undo brings it back, before its holder takes its older state. */
class DestroyObjectMirroredTransaction : public MirroredTransaction
{
public:
    TOV_DECLARE_CLASS (DestroyObjectMirroredTransaction, MirroredTransaction)

    DestroyObjectMirroredTransaction() = default;
    DestroyObjectMirroredTransaction (Object& object, const std::shared_ptr<State>& state)
        : MirroredTransaction (object), state (state) {}

    void perform (Envelop&) override                 {}
    void undo (Envelop& envelop) override;

    const std::shared_ptr<State>& getState() const noexcept  { return state; }

    /** The name, or "Delete " + class expression + short text of the state. */
    juce::String toString() const override;

private:
    std::shared_ptr<State> state;
};

} // namespace tov
