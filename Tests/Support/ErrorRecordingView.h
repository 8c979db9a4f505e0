#pragma once

#include <Tov/Standard/ExecutionContext.h>
#include <vector>

namespace tov::test
{

/** Keeps, in order, the errors and the warnings that reach it, in vectors its owner holds. */
class ErrorRecordingView : public ExecutionContextView
{
public:
    ErrorRecordingView (std::vector<juce::String>& errors, std::vector<juce::String>& warnings) : errors (errors), warnings (warnings) {}

    void errorCallback (const juce::String& message, const Object*) override   { errors.push_back (message); }
    void warningCallback (const juce::String& message, const Object*) override { warnings.push_back (message); }

private:
    std::vector<juce::String>& errors;
    std::vector<juce::String>& warnings;
};

} // namespace tov::test
