#pragma once

#include "ErrorRecordingView.h"
#include <Tov/Standard/ExecutionContext.h>
#include <vector>

namespace tov::test
{

/** Keeps, in order, the errors and the warnings that reach a context while it lives: by default
    the calling thread's context (ExecutionContext::get()). */
class ScopedErrorCapture
{
public:
    explicit ScopedErrorCapture (ExecutionContext& context = ExecutionContext::get())
        : context (context), view (new ErrorRecordingView (errors, warnings))
    {
        context.addView (view);
    }

    ~ScopedErrorCapture() { context.deleteView (view); }

    std::vector<juce::String> errors, warnings;

private:
    ExecutionContext& context;
    ErrorRecordingView* view;
};

} // namespace tov::test
