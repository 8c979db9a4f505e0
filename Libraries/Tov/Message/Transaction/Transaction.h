#pragma once

#include "../../Atomic/NameableObject.h"

namespace tov
{

class Envelop;

/** An undoable edit: a list of states to load into objects, never a replayed call.

    Its name is its description. Performing it puts into the envelop the messages that bring
    the receiving peer up to date; undoing and redoing also apply them here, since both peers
    must change. The envelop is posted by whoever made it.
*/
class Transaction : public NameableObject
{
public:
    TOV_DECLARE_CLASS (Transaction, NameableObject)

    virtual void perform (Envelop& envelop) = 0;
    virtual void undo (Envelop& envelop) = 0;
    /** Performs again by default. */
    virtual void redo (Envelop& envelop)             { perform (envelop); }

    const juce::String& getDescription() const noexcept  { return name.get(); }

protected:
    Transaction() = default;
    explicit Transaction (const juce::String& description)  { name.set (description, false); }
};

} // namespace tov
