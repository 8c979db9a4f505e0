#include "ToSuccessStatusExecutionContext.h"

namespace tov
{

TOV_BEGIN_CLASS (ToSuccessStatusExecutionContext)
TOV_END_CLASS()

void ToSuccessStatusExecutionContext::warning (const juce::String& message, const Object* subject)
{
    if (target != nullptr)
        target->setWarning (message);
    ExecutionContext::warning (message, subject);
}

void ToSuccessStatusExecutionContext::error (const juce::String& message, const Object* subject)
{
    if (target != nullptr)
        target->setError (message);
    ExecutionContext::error (message, subject);
}

void ToSuccessStatusExecutionContext::information (const juce::String& message, const Object* subject)
{
    if (target != nullptr)
        target->setSuccess (message);
    ExecutionContext::information (message, subject);
}

} // namespace tov
