#include "Meters.h"
#include <cmath>

namespace tov
{

TOV_BEGIN_CLASS (Meters, { "unit", "\"m\"" })
TOV_END_CLASS()

juce::String Meters::toUserFriendlyString (double precision) const
{
    if (value == 0.0)
        return "0 m";

    const int64_t kilometers = truncateToInteger64 (value / 1000.0);
    const double meters = value - (double) kilometers * 1000.0;
    const double centimeters = meters - std::trunc (meters);

    juce::StringArray parts;
    if ((precision == 0.0 || precision > 1000.0) && kilometers != 0)
        parts.add (juce::String (kilometers) + " km");
    if ((precision == 0.0 || precision > 1.0) && truncateToInteger64 (meters) != 0)
        parts.add (juce::String (truncateToInteger64 (meters)) + " m");
    if ((precision == 0.0 || precision > 0.01) && centimeters * 100.0 != 0.0)
        parts.add (juce::String (centimeters * 100.0) + " cm");
    return parts.joinIntoString (" ");
}

} // namespace tov
