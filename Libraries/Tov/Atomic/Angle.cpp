#include "Angle.h"
#include "../Core/ObjectImporter.h"
#include <cmath>

namespace tov
{

TOV_BEGIN_CLASS (Angle, { "friendlyName", "\"Angle\"" },
                        { "unit", "\"deg\"" },
                        { "defaultLargeValue", "6.2831853071795864769252867665590" },
                        { "diff", "Angle" },
                        { "presets", "{0degree = 0.0, "
                                     "90degrees = 1.5707963267948966192313216916398, "
                                     "180degrees = 3.1415926535897932384626433832795, "
                                     "1turn = 6.2831853071795864769252867665590, "
                                     "2turns = 12.5663706143591729538505735331180, "
                                     "5turns = 31.4159265358979323846264338327950, "
                                     "10turns = 62.8318530717958647692528676655901}" })
TOV_END_CLASS()

static constexpr double fullTurn = juce::MathConstants<double>::twoPi;

double Angle::normalize (double radians) noexcept
{
    double result = std::fmod (radians, fullTurn);
    if (result > juce::MathConstants<double>::pi)
        result -= fullTurn;
    else if (result <= -juce::MathConstants<double>::pi)
        result += fullTurn;
    return result;
}

double Angle::getRadians() const noexcept
{
    return std::fmod (value, fullTurn);
}

int64_t Angle::getTurns() const noexcept
{
    return truncateToInteger64 ((value - getRadians()) / fullTurn);
}

void Angle::setTurnsAndRadians (int64_t turns, double radians, bool notify)
{
    set ((double) turns * fullTurn + radians, notify);
}

juce::String Angle::toString() const
{
    juce::StringArray parts;
    if (const int64_t turns = getTurns(); turns != 0)
        parts.add (juce::String (turns) + (std::abs (turns) < 2 ? " turn" : " turns"));
    if (const double degrees = getDegrees(); std::abs (degrees) > 1e-9)
        parts.add (juce::String (degrees) + " deg");
    return parts.isEmpty() ? juce::String ("0 deg") : parts.joinIntoString (" and ");
}

// A number of degrees, with or without its unit.
static bool parseDegrees (juce::String text, double& radians)
{
    text = text.trim().toLowerCase();
    if (text.endsWith ("deg"))
        text = text.dropLastCharacters (3).trimEnd();
    if (text.isEmpty() || ! text.containsOnly ("+-0123456789.e"))
        return false;
    radians = Angle::degreesToRadians (text.getDoubleValue());
    return true;
}

bool Angle::parseNumber (const juce::String& text, juce::String& error, const MemberSignature*)
{
    double radians = 0.0;
    if (! parseDegrees (text, radians))
    {
        error = "Could not parse Angle value " + text.trim().quoted();
        return false;
    }
    setNumber (radians);
    return true;
}

bool Angle::load (ObjectImporter& importer)
{
    const auto& state = *importer.getCurrentState();
    if (state.getType() == StateType::stringType && state.getString().endsWith ("deg"))
    {
        double radians = 0.0;
        if (! parseDegrees (state.getString(), radians))
        {
            importer.sendError ("Angle::load", "Could not parse angle " + state.getString().quoted());
            return false;
        }
        setNumber (radians);
        return true;
    }
    return Real::load (importer);
}

} // namespace tov
