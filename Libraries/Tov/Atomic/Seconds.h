#pragma once

#include "PositiveReal.h"

namespace tov
{

/** A time in seconds, shown as a time code "h:mm:ss:ff" with frames at the time base of its
    context. A negative value marks a missing time and the infinity an endless one; values
    beyond a year count as dates. */
class Seconds : public PositiveReal
{
public:
    TOV_DECLARE_CLASS (Seconds, PositiveReal)

    using PositiveReal::PositiveReal;

    static constexpr double invalid() noexcept       { return -1.0; }

    /** Stores any value, the invalid marker included. */
    void set (double newValue, bool notify = true) override  { Real::set (newValue, notify); }
    bool isValid() const noexcept                    { return value >= 0.0; }
    bool isEndless() const noexcept                  { return isPlusInfinity (value); }

    /** Frames per second, from the nearest TimeBaseProvider above. */
    double getTimeBase() const;

    static int64_t getHoursCount (double seconds) noexcept;
    static int getMinutesCount (double seconds) noexcept;
    static int getSecondsCount (double seconds) noexcept;
    static int getFramesCount (double seconds, double rate) noexcept;
    int64_t getHoursCount() const noexcept           { return getHoursCount (value); }
    int getMinutesCount() const noexcept             { return getMinutesCount (value); }
    int getSecondsCount() const noexcept             { return getSecondsCount (value); }
    int getFramesCount (double rate) const noexcept  { return getFramesCount (value, rate); }

    /** "ss:ff", with minutes in front from 1 field or when there are any, and hours from 2 fields. */
    static juce::String toShortString (double seconds, double timeBase, int fields);
    juce::String toShortString (int fields) const    { return toShortString (value, getTimeBase(), fields); }

    double getMinimalStep() const override           { return 1.0 / getTimeBase(); }
    double getSmallStep() const override             { return 1.0; }
    juce::String toString() const override;
    /** "h:mm:ss:ff", read from the end, so that "ss:ff" and "mm:ss:ff" work too; "+oo" is endless. */
    bool parseNumber (const juce::String& text, juce::String& error, const MemberSignature* signature = nullptr) override;
    /** Also reads {time = ...} and the string "+oo". */
    bool load (ObjectImporter& importer) override;

private:
    static juce::String toDateString (double seconds, double timeBase);
};

} // namespace tov
