#include "Real.h"
#include <cmath>
#include <cstring>

namespace tov
{

TOV_BEGIN_CLASS (Real, { "friendlyName", "\"Floating point number\"" },
                       { "presets", "{0 = 0.0}" },
                       { "diff", "Real" },
                       { "allowedCharacters", "\"()+-*/0123456789.e\"" })
TOV_END_CLASS()

//==============================================================================
bool Real::isValid (double number) noexcept
{
    return std::isfinite (number);
}

bool Real::isNan (double number) noexcept
{
    return std::isnan (number);
}

bool Real::isInfinite (double number) noexcept
{
    return isPlusInfinity (number) || isMinusInfinity (number);
}

int Real::toNearestInteger (double number) noexcept
{
    const int64_t rounded = toNearestInteger64 (number);
    return (int) std::max ((int64_t) std::numeric_limits<int>::min(), std::min ((int64_t) std::numeric_limits<int>::max(), rounded));
}

int64_t Real::toNearestInteger64 (double number) noexcept
{
    return truncateToInteger64 (roundHalfAwayFromZero (number));
}

float Real::halfBitsToFloat (uint16_t bits) noexcept
{
    return (float) halfBitsToDouble (bits);
}

double Real::halfBitsToDouble (uint16_t bits) noexcept
{
    const double sign = (bits & 0x8000) != 0 ? -1.0 : 1.0;
    const int exponent = (bits >> 10) & 0x1f;
    const int mantissa = bits & 0x3ff;

    if (exponent == 0)
        return sign * std::ldexp ((double) mantissa, -24);
    if (exponent == 0x1f)
        return mantissa == 0 ? sign * std::numeric_limits<double>::infinity() : std::numeric_limits<double>::quiet_NaN();
    return sign * std::ldexp ((double) (mantissa | 0x400), exponent - 25);
}

//==============================================================================
bool Real::parseRealText (const juce::String& text, double& result)
{
    if (text == "+oo" || text == "-oo")
    {
        result = text[0] == '+' ? plusInfinity : minusInfinity;
        return true;
    }
    if (text.isEmpty() || ! text.containsOnly ("+-0123456789.e"))
        return false;
    result = text.getDoubleValue();
    return true;
}

bool Real::parseNumber (const juce::String& text, juce::String& error, const MemberSignature*)
{
    const juce::String trimmed = text.trim().toLowerCase();
    double number = 0.0;
    if (! parseRealText (trimmed, number))
    {
        error = "Could not parse Real value " + trimmed.quoted();
        return false;
    }
    setNumber (number);
    return true;
}

juce::String Real::toString() const
{
    if (isPlusInfinity (value))
        return "+oo";
    if (isMinusInfinity (value))
        return "-oo";
    return juce::String (value);
}

bool Real::load (ObjectImporter& importer)
{
    double number = 0.0;
    if (importer.getCurrentType() == StateType::integerType)
        number = (double) importer.getCurrentState()->getInteger();
    else if (! importer.readReal (number))
        return false;
    setNumber (number);
    return true;
}

} // namespace tov
