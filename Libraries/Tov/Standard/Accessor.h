#pragma once

#include "../Core/Object.h"
#include <vector>

namespace tov
{

class TemporalTransaction;

/** The way by which a view changes its target: with an undo step, without one, or as the end
    of a live preview. */
class Accessor : public Object
{
public:
    TOV_DECLARE_CLASS (Accessor, Object)

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
        when there was one. */
    static void convertValue (const Object& value, Object& target);

private:
    static void setThroughTemporalTransaction (Object& target, const Object& value, const juce::String& description,
                                               const TemporalTransaction& temporalTransaction);
};

} // namespace tov
