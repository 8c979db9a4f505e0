#pragma once

#include "LeafIssue.h"
#include "../Container/OwnedVector.h"

namespace tov
{

/** A named list of issues with a line of status text: the report of a long job.

    Repeats of a known issue are counted on it rather than added; past 100 issues new ones are
    dropped and the status says "Too many issues...".
*/
class GroupIssue : public Issue
{
public:
    TOV_DECLARE_CLASS (GroupIssue, Issue)

    /** Counts a repeat of a known issue, or appends a new leaf. A success with a message is a
        warning, and a state other than warning an error, as SuccessStatus's bool form has it. */
    void addIssue (SuccessStateEnum state, const juce::String& message, const Object* relatedObject);

    bool doesContainErrors() const;
    /** "2 errors and 1 warning", "No issues", or "Other messages". */
    juce::String getIssuesSummary() const;

    Issue* getIssue (uint64_t index) const           { return issues.get ((size_t) index); }
    const OwnedVector<Issue>& getIssues() const noexcept  { return issues; }
    size_t getNumIssues() const noexcept             { return issues.size(); }
    const juce::String& getName() const noexcept     { return name.get(); }
    void setName (const juce::String& newName)       { name.set (newName); }
    const juce::String& getStatus() const noexcept   { return status.get(); }
    String& getStatusVariable() noexcept             { return status; }
    void setStatus (const juce::String& text)        { status.set (text); }

    static constexpr size_t maximumNumIssues = 100;

private:
    String name;
    String status;
    OwnedVector<Issue> issues;

    LeafIssue* findLeaf (SuccessStateEnum state, const juce::String& message) const;
};

} // namespace tov
