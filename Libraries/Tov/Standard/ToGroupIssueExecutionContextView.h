#pragma once

#include "ExecutionContextView.h"
#include <vector>

namespace tov
{

class GroupIssue;

/** Turns the events of an execution context into an issues report: warnings and errors become
    leaves of the group, and entered blocks and information its status line. */
class ToGroupIssueExecutionContextView : public ExecutionContextView
{
public:
    explicit ToGroupIssueExecutionContextView (GroupIssue& group) : group (group) {}

    void enteredCallback (const juce::String& name) override;
    void leavedCallback() override;
    void askedCallback (const juce::String&, const juce::String&, bool) override {}
    void warningCallback (const juce::String& message, const Object* subject) override;
    void errorCallback (const juce::String& message, const Object* subject) override;
    void informationCallback (const juce::String& message, const Object* subject) override;

private:
    GroupIssue& group;
    std::vector<juce::String> blockNames;
};

} // namespace tov
