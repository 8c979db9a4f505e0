#include "Integer.h"
#include <cmath>

namespace tov
{

TOV_BEGIN_CLASS (Integer, { "friendlyName", "\"Number\"" }, { "allowedCharacters", "\"()+-*/0123456789.e\"" })
TOV_END_CLASS()

void Integer::setNumber (double number)
{
    set (truncateToInteger64 (roundHalfAwayFromZero (number)));
}

double Integer::getLimitAttribute (juce::StringRef name, int64_t unlimited, double infinity) const
{
    const int64_t limit = getIntegerAttribute (name, unlimited);
    return limit == unlimited ? infinity : (double) limit;
}

double Integer::getMinimumValue() const
{
    return getLimitAttribute ("minimum", minimumValue, minusInfinity);
}

double Integer::getMaximumValue() const
{
    return getLimitAttribute ("maximum", maximumValue, plusInfinity);
}

double Integer::getMarkerStep (double scale, double& ratio) const
{
    // 1, 2, 5, 10, 20, 50, ... 100000000: the one nearest to the scale on a logarithmic axis.
    static const std::vector<double> steps = []
    {
        std::vector<double> result;
        for (double decade = 1.0; decade < 1e8; decade *= 10.0)
            for (double factor : { 1.0, 2.0, 5.0 })
                result.push_back (factor * decade);
        result.push_back (1e8);
        return result;
    }();

    const double logScale = std::log (scale);
    size_t best = 0;
    for (size_t i = 1; i + 1 < steps.size(); ++i)
        if (std::abs (std::log (steps[i]) - logScale) < std::abs (std::log (steps[best]) - logScale))
            best = i;
    ratio = steps[best + 1] / steps[best];
    return steps[best];
}

double Integer::makeNumberValid (double number) const
{
    return roundHalfAwayFromZero (Number::makeNumberValid (number));
}

bool Integer::parseIntegerText (juce::String text, int64_t& result, juce::String& error, const juce::String& className)
{
    text = text.trim().toLowerCase();
    const int dot = text.indexOfChar ('.');
    if (dot >= 0)
    {
        const juce::String rest = text.substring (0, dot);
        error = "Truncated number from " + text + " to " + rest;
        text = rest;
    }

    if (text == "-oo")
        result = minimumValue;
    else if (text == "+oo")
        result = maximumValue;
    else if (text.containsOnly ("+-0123456789"))
        result = text.getLargeIntValue();
    else
    {
        error = "Could not parse " + className + " value " + text.quoted();
        return false;
    }
    return true;
}

bool Integer::parseNumber (const juce::String& text, juce::String& error, const MemberSignature*)
{
    int64_t number = 0;
    if (! parseIntegerText (text, number, error, "Integer"))
        return false;
    set (number);
    return true;
}

bool Integer::load (ObjectImporter& importer)
{
    if (importer.getCurrentType() == StateType::realType)
    {
        const double real = importer.getCurrentState()->getReal();
        set (isPlusInfinity (real) ? maximumValue : truncateToInteger64 (real));
        return true;
    }
    return ValueObject::load (importer);
}

} // namespace tov
