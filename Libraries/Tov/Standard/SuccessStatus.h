#pragma once

#include "../Atomic/Enumeration.h"
#include "../Atomic/String.h"

namespace tov
{

/** How something went, from best to worst. */
enum class SuccessStateEnum
{
    success = 0,
    warning = 1,
    error = 2
};

/** The reflected form of SuccessStateEnum. */
class SuccessState : public Enumeration
{
public:
    TOV_DECLARE_CLASS (SuccessState, Enumeration)
    TOV_ELEMENTS ((success, 0), (warning, 1), (error, 2))

    SuccessStateEnum getState() const noexcept             { return (SuccessStateEnum) get(); }
    void setState (SuccessStateEnum state, bool notify)    { set ((int32_t) state, notify); }
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
    SuccessStatus (SuccessStateEnum state, const juce::String& message);
    SuccessStatus (const SuccessStatus& other) : Object (other)  { other.copyTo (*this); }
    SuccessStatus& operator= (const SuccessStatus& other)        { other.copyTo (*this); return *this; }

    /** Does nothing, and notifies nobody, when both parts are already equal; otherwise sets
        the state, then the message. */
    void set (SuccessStateEnum newState, const juce::String& newMessage);
    /** false gives an error; true with a message gives a warning; true alone gives a plain success. */
    void set (bool success, const juce::String& newMessage);

    void setError (const juce::String& newMessage)      { set (SuccessStateEnum::error, newMessage); }
    void setWarning (const juce::String& newMessage)    { set (SuccessStateEnum::warning, newMessage); }
    void setSuccess (const juce::String& newMessage)    { set (SuccessStateEnum::success, newMessage); }

    bool isError() const noexcept                       { return getState() == SuccessStateEnum::error; }
    bool isWarning() const noexcept                     { return getState() == SuccessStateEnum::warning; }
    bool isSuccess() const noexcept                     { return getState() == SuccessStateEnum::success; }
    SuccessStateEnum getState() const noexcept          { return state.getState(); }
    const juce::String& getMessage() const noexcept     { return message.get(); }
    /** The state's description: "Success", "Warning" or "Error". */
    juce::String getStateDescription() const            { return state.getDescription(); }

    juce::String toString() const override              { return message.get(); }

private:
    SuccessState state;
    String message;
};

} // namespace tov
