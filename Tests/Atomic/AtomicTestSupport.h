#pragma once

#include "Support/TestValues.h"
#include <Tov/Atomic/Atomic.h>
#include <Tov/Core/ClassRegistry.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Standard/ExecutionContext.h>
#include <gtest/gtest.h>
#include <functional>
#include <memory>

// Helpers of the tests of the value classes.
namespace tov::test
{

/** What a load reported, each message on a line of its own as "Error: ..." or "Warning: ...". */
struct LoadOutcome
{
    bool result = false;
    juce::String messages;
};

inline LoadOutcome loadFromState (Object& object, const std::shared_ptr<State>& state)
{
    LoadOutcome outcome;
    ToStringExecutionContext context (outcome.messages);
    outcome.result = object.loadFromState (context, state);
    return outcome;
}

/** Loads the state that a State text describes. */
inline LoadOutcome loadFromText (Object& object, const juce::String& text)
{
    juce::String parseMessages;
    ToStringExecutionContext parseContext (parseMessages);
    return loadFromState (object, State::createFromStateString (parseContext, text, "test"));
}

/** Loads the state that the exporter makes of source, with these flags, into target. */
inline LoadOutcome saveAndLoad (const Object& source, Object& target, uint32_t flags = 0)
{
    return loadFromState (target, StateObjectExporter::make (source, flags, false));
}

/** The outcome of Number::parseNumber on a number. */
struct ParseOutcome
{
    bool result = false;
    juce::String error;
};

inline ParseOutcome parse (Number& number, const juce::String& text)
{
    ParseOutcome outcome;
    outcome.result = number.parseNumber (text, outcome.error);
    return outcome;
}

/** Counts the changed() calls that reach an object. */
class ChangeCounter : public View
{
public:
    explicit ChangeCounter (Object& object)   { attachObject (&object); }
    void changedCallback (Object*, Object*) override { ++count; }
    int count = 0;
};

/** Calls a function of the test at each changed() of the object it watches. */
class ChangeCallback : public View
{
public:
    ChangeCallback (Object& object, std::function<void()> callback) : callback (std::move (callback)) { attachObject (&object); }
    void changedCallback (Object*, Object*) override   { callback(); }

private:
    std::function<void()> callback;
};

} // namespace tov::test
