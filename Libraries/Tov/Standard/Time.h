#pragma once

#include "../Core/ValueObject.h"
#include "TimeText.h"

namespace tov
{

/** A wall-clock instant, saved as the integer milliseconds since 1970. Its texts are those
    of TimeText, in local time. */
class Time : public ValueObject<juce::Time>
{
public:
    TOV_DECLARE_CLASS (Time, Object)

    using ValueObject::ValueObject;

    static Time getCurrentTime()                     { return Time (juce::Time::getCurrentTime()); }

    void reset (bool notify = true)                  { set (juce::Time(), notify); }

    /** "2026/03/07 09:05:02"; "N/A" for a zero time. */
    juce::String toString() const override           { return TimeText::toString (value); }
    /** "09:05:02"; "N/A" for a zero time. */
    juce::String toStringWithoutDay() const          { return TimeText::toStringWithoutDay (value); }
    /** "07/03/2026": day, month, year. */
    juce::String toFrenchStyleString() const         { return TimeText::toFrenchStyleString (value); }
    /** "2026-3-7_9-5-2": no padding. */
    juce::String toFileNameString() const            { return TimeText::toFileNameString (value); }

    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;
    /** ISO 8601 text with milliseconds; loads from the same form. */
    juce::var saveToJson (uint32_t flags) const override;
    bool loadFromJson (ExecutionContext& context, const juce::var& value) override;
};

} // namespace tov
