#pragma once

#include "ExecutionContext.h"

namespace tov
{

/** Collects the messages reported to it in a string, one line each.

    Views still see every event, so a caller can both keep the text and log it.
*/
class ToStringExecutionContext : public ExecutionContext
{
public:
    TOV_DECLARE_CLASS (ToStringExecutionContext, ExecutionContext)

    ToStringExecutionContext() = default;
    explicit ToStringExecutionContext (juce::String& target) : target (&target) {}

    void setTarget (juce::String& newTarget) noexcept { target = &newTarget; }

    void warning (const juce::String& message, const Object* subject = nullptr) override;
    void error (const juce::String& message, const Object* subject = nullptr) override;
    void information (const juce::String& message, const Object* subject = nullptr) override;

protected:
    /** Appends prefix + ": " (or ">" without a prefix), the message and "\n"; nothing without a target. */
    void write (const juce::String& prefix, const juce::String& message);

private:
    juce::String* target = nullptr;
};

} // namespace tov
