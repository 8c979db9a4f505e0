#include "SuccessStatus.h"

namespace tov
{

TOV_BEGIN_CLASS (SuccessState)
TOV_END_CLASS()

TOV_BEGIN_CLASS (SuccessStatus)
    TOV_VARIABLE (state)
    TOV_VARIABLE (message)
TOV_END_CLASS()

SuccessStatus::SuccessStatus (SuccessStateEnum initialState, const juce::String& initialMessage)
{
    set (initialState, initialMessage);
}

void SuccessStatus::set (SuccessStateEnum newState, const juce::String& newMessage)
{
    if (newState == getState() && newMessage == getMessage())
        return;
    state.setState (newState, true);
    message.set (newMessage, true);
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

} // namespace tov
