#pragma once

#include "Support/RecordingExecutionContext.h"
#include "Support/TestValues.h"
#include <Tov/Atomic/Atomic.h>
#include <Tov/Container/NamedObjectMap.h>
#include <Tov/Container/OwnedVector.h>
#include <Tov/Core/Json.h>
#include <Tov/Pointer/OwnedPointer.h>
#include <gtest/gtest.h>

// Documents for the tests of the JSON bridge.
namespace tov::test
{

/** One variable of each kind the bridge treats apart: a default, a JSON identifier, one kept
    when pruning, a read-only one and a trigger. */
class JsonSample : public Object
{
public:
    TOV_DECLARE_CLASS (JsonSample, Object)

    Integer count;
    Real ratio;
    String label;
    Boolean enabled;
    Integer kept;
    Integer hidden;
    Trigger fired;
};

/** A sample with one more variable, for pointers that hold a derived object. */
class JsonDerivedSample : public JsonSample
{
public:
    TOV_DECLARE_CLASS (JsonDerivedSample, JsonSample)

    String extra;
};

/** A sample embedded, one behind an owned pointer and a list of them. */
class JsonNest : public Object
{
public:
    TOV_DECLARE_CLASS (JsonNest, Object)

    JsonSample inner;
    OwnedPointer<JsonSample> pointer;
    OwnedVector<JsonSample> list;
};

/** Adds the classes above to the library tree, once. */
void ensureJsonTestLibrary();

/** The one-line JSON text of a value. */
inline juce::String oneLine (const juce::var& value)      { return juce::JSON::toString (value, true); }

} // namespace tov::test
