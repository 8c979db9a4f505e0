#include "Seconds.h"
#include "TimeBaseProvider.h"
#include "../Core/ObjectImporter.h"
#include <cmath>

namespace tov
{

TOV_BEGIN_CLASS (Seconds, { "unit", "\"s\"" }, { "allowedCharacters", "\"0123456789:.+\"" })
TOV_END_CLASS()

static constexpr int64_t maximumHoursOfATimeCode = 8784;  // a leap year

static juce::String pad2 (int64_t number)
{
    return juce::String (number).paddedLeft ('0', 2);
}

double Seconds::getTimeBase() const
{
    return TimeBaseProvider::getTimeBaseFromContext (this);
}

//==============================================================================
int64_t Seconds::getHoursCount (double seconds) noexcept
{
    return truncateToInteger64 (seconds / 3600.0);
}

int Seconds::getMinutesCount (double seconds) noexcept
{
    return (int) (truncateToInteger64 (seconds / 60.0) % 60);
}

int Seconds::getSecondsCount (double seconds) noexcept
{
    return (int) (truncateToInteger64 (seconds) % 60);
}

int Seconds::getFramesCount (double seconds, double rate) noexcept
{
    if (rate == 0.0)
        return 0;
    const double fraction = seconds - std::trunc (seconds);
    return (int) truncateToInteger64 ((fraction + 0.000001) * rate);
}

juce::String Seconds::toShortString (double seconds, double timeBase, int fields)
{
    const int64_t hours = getHoursCount (seconds);
    const int minutes = getMinutesCount (seconds);
    juce::String text = pad2 (getSecondsCount (seconds)) + ":" + pad2 (getFramesCount (seconds, timeBase));
    if (hours != 0 || minutes != 0 || fields >= 1)
        text = pad2 (minutes) + ":" + text;
    if (hours != 0 || fields >= 2)
        text = juce::String (hours) + ":" + text;
    return text;
}

juce::String Seconds::toDateString (double seconds, double timeBase)
{
    const juce::Time time (truncateToInteger64 (seconds * 1000.0));
    return juce::String (time.getDayOfMonth()) + " " + time.getMonthName (true) + " " + juce::String (time.getYear()) + " "
         + juce::String (time.getHours()) + ":" + pad2 (time.getMinutes()) + ":" + pad2 (time.getSeconds())
         + ":" + pad2 (getFramesCount (seconds, timeBase));
}

juce::String Seconds::toString() const
{
    if (isPlusInfinity (value))
        return "+oo";
    // Keeps 0.9999999999 from showing as the frame before the next second.
    const double seconds = value + 1e-9;
    if (getHoursCount (seconds) <= maximumHoursOfATimeCode)
        return toShortString (seconds, getTimeBase(), 4);
    return toDateString (seconds, getTimeBase());
}

bool Seconds::parseNumber (const juce::String& text, juce::String&, const MemberSignature*)
{
    if (text.trim() == "+oo")
    {
        setNumber (plusInfinity);
        return true;
    }

    juce::StringArray tokens;
    tokens.addTokens (text, ":.", {});
    while (tokens.size() > 4)
        tokens.remove (0);

    double fields[4] = {};  // frames, seconds, minutes, hours
    for (int i = 0; i < tokens.size(); ++i)
        fields[i] = tokens[tokens.size() - 1 - i].getDoubleValue();
    setNumber ((fields[3] * 60.0 + fields[2]) * 60.0 + fields[1] + fields[0] / getTimeBase());
    return true;
}

bool Seconds::load (ObjectImporter& importer)
{
    const auto& state = *importer.getCurrentState();
    if (state.getType() == StateType::variablesType && state.getNumVariables() > 0 && state.getVariableName (0) == "time")
    {
        ObjectImporter::Scope scope (importer, (size_t) 0);
        return Real::load (importer);
    }
    if (state.getType() == StateType::stringType && state.getString() == "+oo")
    {
        setNumber (plusInfinity);
        return true;
    }
    return Real::load (importer);
}

} // namespace tov
