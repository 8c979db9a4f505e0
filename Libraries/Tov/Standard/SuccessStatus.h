#pragma once

#include "../Core/Object.h"

namespace tov
{

/** How something went, from best to worst. */
enum class SuccessStateEnum
{
    success = 0,
    warning = 1,
    error = 2
};

/** The small value that says how something went: a state and a message.

    The message of a success is usually empty; a success with something to
    say counts as a warning (see the bool form of set).
*/
class SuccessStatus : public Object
{
public:
    TOV_DECLARE_CLASS (SuccessStatus, Object)

    SuccessStatus() = default;
    SuccessStatus (SuccessStateEnum state, const juce::String& message) : state (state), message (message) {}
    SuccessStatus (const SuccessStatus& other) : Object (other), state (other.state), message (other.message) {}
    SuccessStatus& operator= (const SuccessStatus& other) { other.copyTo (*this); return *this; }

    /** Does nothing, and notifies nobody, when both parts are already equal. */
    void set (SuccessStateEnum newState, const juce::String& newMessage);
    /** false gives an error; true with a message gives a warning; true alone gives a plain success. */
    void set (bool success, const juce::String& newMessage);

    void setError (const juce::String& newMessage)      { set (SuccessStateEnum::error, newMessage); }
    void setWarning (const juce::String& newMessage)    { set (SuccessStateEnum::warning, newMessage); }
    void setSuccess (const juce::String& newMessage)    { set (SuccessStateEnum::success, newMessage); }

    bool isError() const noexcept                       { return state == SuccessStateEnum::error; }
    bool isWarning() const noexcept                     { return state == SuccessStateEnum::warning; }
    bool isSuccess() const noexcept                     { return state == SuccessStateEnum::success; }
    SuccessStateEnum getState() const noexcept          { return state; }
    const juce::String& getMessage() const noexcept     { return message; }

    void copyTo (Object& target) const override;
    bool equalsSameClass (const Object& other) const override;
    juce::String toString() const override              { return message; }

private:
    SuccessStateEnum state = SuccessStateEnum::success;
    juce::String message;
};

} // namespace tov
