#pragma once

#include "Issue.h"
#include "SuccessStatus.h"
#include "Time.h"
#include "../Atomic/PositiveIntegerRanges.h"
#include "../Pointer/ObjectWeakPointer.h"

namespace tov
{

/** One warning or error of a report, with when it last happened, how often, and what about. */
class LeafIssue : public Issue
{
public:
    TOV_DECLARE_CLASS (LeafIssue, Issue)

    const SuccessStatus& getStatus() const noexcept          { return status; }
    SuccessStatus& getStatus() noexcept                      { return status; }
    const Time& getTime() const noexcept                     { return time; }
    Time& getTime() noexcept                                 { return time; }
    const StrictlyPositiveInteger& getNumOccurences() const noexcept  { return numOccurences; }
    StrictlyPositiveInteger& getNumOccurences() noexcept     { return numOccurences; }
    const ObjectWeakPointer& getRelatedObject() const noexcept { return relatedObject; }
    ObjectWeakPointer& getRelatedObject() noexcept           { return relatedObject; }

    /** Whether this is the issue of that state and message. */
    bool isSameIssue (SuccessStateEnum state, const juce::String& message) const;
    /** Counts one more occurrence, now, about that object. */
    void addOccurence (const Object* object);

    /** "Error: disk full": the state's description, then the message. */
    juce::String toString() const override;

private:
    SuccessStatus status;
    Time time;
    StrictlyPositiveInteger numOccurences;
    ObjectWeakPointer relatedObject;
};

} // namespace tov
