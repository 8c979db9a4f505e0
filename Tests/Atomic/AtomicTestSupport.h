#pragma once

#include "Support/ChangeCallback.h"
#include "Support/ChangeCounter.h"
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

} // namespace tov::test
