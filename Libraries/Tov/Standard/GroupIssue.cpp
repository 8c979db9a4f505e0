#include "GroupIssue.h"

namespace tov
{

TOV_BEGIN_CLASS (GroupIssue)
    TOV_VARIABLE (name)
    TOV_VARIABLE (status)
    TOV_VARIABLE (issues)
TOV_END_CLASS()

void GroupIssue::addIssue (SuccessStateEnum state, const juce::String& message, const Object* relatedObject)
{
    if (auto* known = findLeaf (state, message))
    {
        known->addOccurence (relatedObject);
        return;
    }
    if (issues.size() > maximumNumIssues)
    {
        setStatus ("Too many issues...");
        return;
    }
    auto* leaf = static_cast<LeafIssue*> (LeafIssue::staticClass.createObject (nullptr));
    leaf->getStatus().set (state == SuccessStateEnum::warning, message);
    leaf->getTime().set (juce::Time::getCurrentTime());
    leaf->getRelatedObject().set (const_cast<Object*> (relatedObject));
    issues.append (leaf, true);
    setStatus (leaf->toString());
}

LeafIssue* GroupIssue::findLeaf (SuccessStateEnum state, const juce::String& message) const
{
    for (auto* issue : issues)
        if (auto* leaf = dynamic_cast<LeafIssue*> (issue))
            if (leaf->isSameIssue (state, message))
                return leaf;
    return nullptr;
}

bool GroupIssue::doesContainErrors() const
{
    for (auto* issue : issues)
        if (auto* leaf = dynamic_cast<LeafIssue*> (issue))
            if (leaf->getStatus().isError())
                return true;
    return false;
}

static juce::String countText (int count, const juce::String& word)
{
    if (count == 0)
        return "No " + word + "s";
    if (count == 1)
        return "1 " + word;
    return juce::String (count) + " " + word + "s";
}

juce::String GroupIssue::getIssuesSummary() const
{
    if (issues.size() == 0)
        return "No issues";
    int numErrors = 0, numOthers = 0;
    for (auto* issue : issues)
        if (auto* leaf = dynamic_cast<LeafIssue*> (issue))
            ++(leaf->getStatus().isError() ? numErrors : numOthers);

    if (numErrors == 0 && numOthers == 0)
        return "Other messages";
    juce::String summary;
    if (numErrors > 0)
        summary << countText (numErrors, "error");
    if (numErrors > 0 && numOthers > 0)
        summary << " and ";
    if (numOthers > 0)
        summary << countText (numOthers, "warning");
    return summary;
}

} // namespace tov
