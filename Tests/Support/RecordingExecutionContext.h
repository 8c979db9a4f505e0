#pragma once

#include "ErrorRecordingView.h"
#include <Tov/Standard/ExecutionContext.h>
#include <vector>

namespace tov::testing
{

/** An execution context that keeps every error and warning it is sent, in order. */
class RecordingExecutionContext
{
public:
    RecordingExecutionContext()
    {
        context.addView (new test::ErrorRecordingView (errors, warnings));
    }

    ExecutionContext& get() noexcept { return context; }
    operator ExecutionContext&() noexcept { return context; }

    std::vector<juce::String> errors, warnings;

private:
    ExecutionContext context;
};

} // namespace tov::testing
