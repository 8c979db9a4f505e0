#include "SuccessStatus.h"

namespace tov
{

TOV_BEGIN_CLASS (SuccessStatus)
TOV_END_CLASS()

void SuccessStatus::set (SuccessStateEnum newState, const juce::String& newMessage)
{
    if (newState == state && newMessage == message)
        return;
    state = newState;
    message = newMessage;
    changed();
}

void SuccessStatus::set (bool success, const juce::String& newMessage)
{
    if (! success)
        setError (newMessage);
    else if (newMessage.isNotEmpty())
        setWarning (newMessage);
    else
        setSuccess ({});
}

void SuccessStatus::copyTo (Object& target) const
{
    Object::copyTo (target);
    if (auto* status = dynamic_cast<SuccessStatus*> (&target))
        status->set (state, message);
}

bool SuccessStatus::equalsSameClass (const Object& other) const
{
    auto* status = dynamic_cast<const SuccessStatus*> (&other);
    return status != nullptr && Object::equalsSameClass (other)
        && status->state == state && status->message == message;
}

} // namespace tov
