#pragma once

#include <Tov/Standard/ExecutionContext.h>
#include <vector>

namespace tov::test
{

/** Keeps, in order, the errors that reach the calling thread's context (ExecutionContext::get())
    while it lives. */
class ScopedErrorCapture
{
public:
    ScopedErrorCapture() : context (ExecutionContext::get()), view (new Recorder (errors))
    {
        context.addView (view);
    }

    ~ScopedErrorCapture() { context.deleteView (view); }

    std::vector<juce::String> errors;

private:
    struct Recorder : public ExecutionContextView
    {
        explicit Recorder (std::vector<juce::String>& errors) : errors (errors) {}
        void errorCallback (const juce::String& message, const Object*) override { errors.push_back (message); }
        std::vector<juce::String>& errors;
    };

    ExecutionContext& context;
    Recorder* view;
};

} // namespace tov::test
