#pragma once

#include "ExecutionContext.h"
#include "SuccessStatus.h"

namespace tov
{

/** Turns reported messages into a SuccessStatus: the last message wins.

    An error sets an error, a warning a warning, an information a success
    carrying its text. Views still see every event.
*/
class ToSuccessStatusExecutionContext : public ExecutionContext
{
public:
    TOV_DECLARE_CLASS (ToSuccessStatusExecutionContext, ExecutionContext)

    ToSuccessStatusExecutionContext() = default;
    explicit ToSuccessStatusExecutionContext (SuccessStatus& target) : target (&target) {}

    void setTarget (SuccessStatus& newTarget) noexcept { target = &newTarget; }

    void warning (const juce::String& message, const Object* subject = nullptr) override;
    void error (const juce::String& message, const Object* subject = nullptr) override;
    void information (const juce::String& message, const Object* subject = nullptr) override;

private:
    SuccessStatus* target = nullptr;
};

} // namespace tov
