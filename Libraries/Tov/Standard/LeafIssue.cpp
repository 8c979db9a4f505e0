#include "LeafIssue.h"

namespace tov
{

TOV_BEGIN_CLASS (Issue)
TOV_END_CLASS()

TOV_BEGIN_CLASS (LeafIssue)
    TOV_VARIABLE (status)
    TOV_VARIABLE (time)
    TOV_VARIABLE (numOccurences, { "default", "1" })
    TOV_VARIABLE (relatedObject)
TOV_END_CLASS()

bool LeafIssue::isSameIssue (SuccessStateEnum state, const juce::String& message) const
{
    return status.getState() == state && status.getMessage() == message;
}

void LeafIssue::addOccurence (const Object* object)
{
    numOccurences.set (numOccurences.get() + 1);
    time.set (juce::Time::getCurrentTime());
    relatedObject.set (const_cast<Object*> (object));
}

juce::String LeafIssue::toString() const
{
    return status.getStateDescription() + ": " + status.getMessage();
}

} // namespace tov
