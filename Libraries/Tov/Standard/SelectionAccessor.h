#pragma once

#include "Accessor.h"
#include "../Container/ObjectSelection.h"
#include "../Core/ObjectSpace.h"
#include "../Pointer/WeakPointer.h"

namespace tov
{

/** The accessor that turns an edit of one member's variable into the same edit of that variable
    in every member of a selection, as one transaction.

    The variable is found again in each member by the path from the member that holds the edited
    one (a TypedVariablePath): editing "gain" of one selected track sets "gain" of them all. With
    no selection, fewer than two members, or a target outside the members, it edits the target
    alone, as Accessor does.

        SelectionAccessor accessor;
        accessor.setSelection (&selectedTracks);
        accessor.setTargetValue (track->gain, Integer (3), "Set gain", nullptr);  // one undo step
*/
class SelectionAccessor : public Accessor
{
public:
    TOV_DECLARE_CLASS (SelectionAccessor, Accessor)

    SelectionAccessor();

    /** A SelectionTemporalTransaction over the targets of a change of the target. */
    TemporalTransaction* createTemporalTransaction (Object& target) const override;
    /** Sets the value on every target of the change, as Accessor sets one: volatile without a
        description, otherwise one transaction, whose description then names the selection. */
    void setTargetValue (Object& target, const Object& value, const juce::String& description,
                         const TemporalTransaction* temporalTransaction) const override;
    /** The same variable in every member, or the target alone. */
    void getMultiTargets (Object& target, std::vector<Object*>& result) const override;

    /** Appends the target's variable as found in each member, those that are editable; false,
        appending nothing, when the selection does not cover the target. */
    bool getTargetsFromSelectionAndTarget (Object& target, std::vector<Object*>& result) const;

    /** setTargetValue without a temporal transaction. */
    void setValue (Object& target, const Object& value, const juce::String& description) const;

    ObjectSelection* getSelection() const            { return selection.get(); }
    void setSelection (ObjectSelection* newSelection)  { selection.set (newSelection, false); }
    ObjectSpace* getReferenceSpace() const           { return referenceSpace.get(); }
    void setReferenceSpace (ObjectSpace* space)      { referenceSpace.set (space, false); }

private:
    WeakPointer<ObjectSelection> selection;
    WeakPointer<ObjectSpace> referenceSpace;

    /** The description, followed by what the change spans when it spans several targets. */
    juce::String describeChange (const juce::String& description, size_t numTargets, const Object& target) const;
};

} // namespace tov
