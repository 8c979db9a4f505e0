#pragma once

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
        context.addView (new Recorder (*this));
    }

    ExecutionContext& get() noexcept { return context; }
    operator ExecutionContext&() noexcept { return context; }

    std::vector<juce::String> errors, warnings;

private:
    struct Recorder : public ExecutionContextView
    {
        explicit Recorder (RecordingExecutionContext& owner) : owner (owner) {}
        void errorCallback (const juce::String& message, const Object*) override   { owner.errors.push_back (message); }
        void warningCallback (const juce::String& message, const Object*) override { owner.warnings.push_back (message); }
        RecordingExecutionContext& owner;
    };

    ExecutionContext context;
};

} // namespace tov::testing
