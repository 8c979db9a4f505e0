#include "ToStringExecutionContext.h"

namespace tov
{

TOV_BEGIN_CLASS (ToStringExecutionContext)
TOV_END_CLASS()

void ToStringExecutionContext::write (const juce::String& prefix, const juce::String& message)
{
    if (target != nullptr)
        *target << (prefix.isEmpty() ? juce::String (">") : prefix + ": ") << message << "\n";
}

void ToStringExecutionContext::warning (const juce::String& message, const Object* subject)
{
    write ("Warning", message);
    ExecutionContext::warning (message, subject);
}

void ToStringExecutionContext::error (const juce::String& message, const Object* subject)
{
    write ("Error", message);
    ExecutionContext::error (message, subject);
}

void ToStringExecutionContext::information (const juce::String& message, const Object* subject)
{
    write ({}, message);
    ExecutionContext::information (message, subject);
}

} // namespace tov
