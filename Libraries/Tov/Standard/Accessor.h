#pragma once

#include "../Core/Object.h"
#include <vector>

namespace tov
{

class ScopedTransaction;
class TemporalTransaction;

/** The way by which a view changes its target: with an undo step, without one, or as the end
    of a live preview. */
class Accessor : public Object
{
public:
    TOV_DECLARE_CLASS (Accessor, Object)

    /** The accessor that edits the object: the variable "accessor" of the object or of its
        nearest owner with one, else the one that the current service owns; null outside any
        service. */
    static Accessor* getAccessor (Object& object);

    /** A new DefaultTemporalTransaction, for a preview of the target's value. */
    virtual TemporalTransaction* createTemporalTransaction (Object& target) const;

    /** Converts the value onto the target, when the target is editable:
        - with no description, as a volatile change, no undo step;
        - with a description, as one undoable transaction of that description;
        - with a temporal transaction too, the undo step goes from the value the preview started from. */
    virtual void setTargetValue (Object& target, const Object& value, const juce::String& description,
                                 const TemporalTransaction* temporalTransaction) const;

    /** The objects that a change of the target reaches: the target alone here. */
    virtual void getMultiTargets (Object& target, std::vector<Object*>& result) const  { result.push_back (&target); }

    /** Converts the value onto the target as an edit that the open scope hears: a value of the
        target's own class is copied, which tells nobody, so the target is then told of the change
        when there was one. A value of another class goes through the first converter that
        ObjectConverters has for the target's class, and without one through the target's
        convertFrom; either tells the target's observers itself. */
    static void convertValue (const Object& value, Object& target);

protected:
    /** A described change of one target comes in two halves around the transaction that records
        it. Before it opens, with a temporal transaction: a target whose parent has no constraints
        on it takes the value unrecorded (the transaction records it from the undo value); a
        constrained one goes back to the undo value as a volatile change, so that its constraints
        see the very step that undo will reverse. */
    static void setTargetBeforeTransaction (Object& target, const Object& value, bool temporal, const Object* undoValue);
    /** Inside the transaction: records the change from the undo value, or stores the target and
        sets the value. */
    static void setTargetInsideTransaction (ScopedTransaction& transaction, Object& target, const Object& value,
                                            bool temporal, const Object* undoValue);

private:
    static bool hasConstraints (const Object& target);
};

} // namespace tov
