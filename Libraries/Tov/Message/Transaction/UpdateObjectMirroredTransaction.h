#pragma once

#include "MirroredTransaction.h"

namespace tov
{

/** A change of one object: the shallow state it took, and the one it had before. */
class UpdateObjectMirroredTransaction : public MirroredTransaction
{
public:
    TOV_DECLARE_CLASS (UpdateObjectMirroredTransaction, MirroredTransaction)

    UpdateObjectMirroredTransaction() = default;
    UpdateObjectMirroredTransaction (Object& object, const std::shared_ptr<State>& state, const std::shared_ptr<State>& undoState)
        : MirroredTransaction (object), state (state), undoState (undoState) {}

    /** Sends the new state; this peer holds it already. */
    void perform (Envelop& envelop) override;
    /** Loads the older state here and sends it, when there is one. */
    void undo (Envelop& envelop) override;
    void redo (Envelop& envelop) override;

    const std::shared_ptr<State>& getState() const noexcept      { return state; }
    const std::shared_ptr<State>& getUndoState() const noexcept  { return undoState; }

    /** The name, or "Update " + class expression + short text of the new state. */
    juce::String toString() const override;

private:
    std::shared_ptr<State> state, undoState;

    /** A message that loads the state, with its object kept out of the mirror's way for the next
        two mirroring updates, so that what is being sent does not come back and overwrite it.
        object and space are what the message's address resolves to; scope is
        ChildTransactionsScope::findFor (*this). */
    MirroringMessage* makeMessage (const std::shared_ptr<State>& stateToLoad, ChildTransactionsScope* scope,
                                   Object*& object, ObjectSpace*& space) const;
    /** Loads the state here and sends it. */
    void applyAndAddState (const std::shared_ptr<State>& stateToLoad, Envelop& envelop) const;
    bool isExcludedFromMirroringWhenSent (const Object& object, ChildTransactionsScope* scope) const;
};

} // namespace tov
