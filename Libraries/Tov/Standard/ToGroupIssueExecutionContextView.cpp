#include "ToGroupIssueExecutionContextView.h"
#include "GroupIssue.h"

namespace tov
{

void ToGroupIssueExecutionContextView::enteredCallback (const juce::String& name)
{
    blockNames.push_back (name);
    group.setStatus (name);
}

void ToGroupIssueExecutionContextView::leavedCallback()
{
    if (blockNames.empty())
        return;
    group.setStatus (blockNames.back() + ": ok");
    blockNames.pop_back();
}

void ToGroupIssueExecutionContextView::warningCallback (const juce::String& message, const Object* subject)
{
    group.addIssue (SuccessStateEnum::warning, message, subject);
}

void ToGroupIssueExecutionContextView::errorCallback (const juce::String& message, const Object* subject)
{
    group.addIssue (SuccessStateEnum::error, message, subject);
}

void ToGroupIssueExecutionContextView::informationCallback (const juce::String& message, const Object*)
{
    group.setStatus (message);
}

} // namespace tov
