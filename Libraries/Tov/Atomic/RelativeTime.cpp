#include "RelativeTime.h"

namespace tov
{

TOV_BEGIN_CLASS (RelativeTime, { "allowedCharacters", "\"years months weeks days hours minutes seconds milliseconds ()+-*/0123456789.e\"" })
TOV_END_CLASS()

juce::String RelativeTime::toString() const
{
    if (isPlusInfinity (value))
        return "+oo";
    if (isMinusInfinity (value))
        return "-oo";
    return juce::RelativeTime (value).getDescription ("0");
}

bool RelativeTime::parseNumber (const juce::String& text, juce::String&, const MemberSignature*)
{
    setNumber (parseDuration (text));
    return true;
}

// Unit words in the order of their replacement by one-letter codes. Replacement is blind to
// word boundaries: "seconds" comes before "milliseconds", so that a spelled-out "5 milliseconds"
// becomes "5millis" and reads as 5 minutes; only "ms", "msec" and "msecs" reach milliseconds.
// The days' abbreviation "ds" comes after the seconds, where it cannot eat the end of "seconds".
struct UnitWord
{
    const char* word;
    const char* code;
};

static const UnitWord unitWords[] =
{
    { "years", "y" }, { "year", "y" }, { "yrs", "y" }, { "yr", "y" },
    { "months", "n" }, { "month", "n" }, { "mnths", "n" }, { "mnth", "n" },
    { "weeks", "w" }, { "week", "w" }, { "wks", "w" }, { "wk", "w" },
    { "days", "d" }, { "day", "d" },
    { "hours", "h" }, { "hour", "h" }, { "hrs", "h" }, { "hr", "h" },
    { "minutes", "m" }, { "minute", "m" }, { "mins", "m" }, { "min", "m" },
    { "seconds", "s" }, { "seconds", "s" }, { "secs", "s" }, { "sec", "s" },
    { "ds", "d" },
    { "milliseconds", "l" }, { "millisecond", "l" }, { "msecs", "l" }, { "msec", "l" }, { "ms", "l" }
};

static constexpr double secondsPerMinute = 60.0;
static constexpr double secondsPerHour = 3600.0;
static constexpr double secondsPerDay = 86400.0;

double RelativeTime::parseDuration (const juce::String& input)
{
    juce::String text = input.removeCharacters (" ,+");
    for (auto& unit : unitWords)
        text = text.replace (unit.word, unit.code, true);

    if (text == "oo")
        return plusInfinity;
    if (text == "-oo")
        return minusInfinity;

    // Each code takes the text before its last occurrence as its amount and passes on the rest.
    auto takeAmount = [&text] (juce::juce_wchar code)
    {
        const int index = text.lastIndexOfChar (code);
        if (index < 0)
            return juce::String();
        const juce::String amount = text.substring (0, index);
        text = text.substring (index + 1);
        return amount;
    };

    const double years = takeAmount ('y').getDoubleValue();
    const double months = takeAmount ('n').getDoubleValue();
    const double weeks = takeAmount ('w').getDoubleValue();
    const double days = takeAmount ('d').getDoubleValue();
    const double hours = takeAmount ('h').getDoubleValue();
    const double minutes = takeAmount ('m').getDoubleValue();
    double seconds = takeAmount ('s').getDoubleValue();
    const int64_t milliseconds = takeAmount ('l').getLargeIntValue();
    if (seconds == 0.0)
        seconds = text.getDoubleValue();

    return years * 365.0 * secondsPerDay + months * 31.0 * secondsPerDay + weeks * 7.0 * secondsPerDay
         + days * secondsPerDay + hours * secondsPerHour + minutes * secondsPerMinute + seconds
         + (double) milliseconds / 1000.0;
}

} // namespace tov
