#include "PositiveInteger.h"

namespace tov
{

TOV_BEGIN_CLASS (PositiveInteger, { "friendlyName", "\"Positive Number\"" }, { "minimum", "0" })
TOV_END_CLASS()

double PositiveInteger::getMaximumValue() const
{
    const int64_t maximum = getIntegerAttribute ("maximum", -1);
    if (maximum == -1)
        return plusInfinity;
    return maximum < 0 ? (double) (uint64_t) maximum : (double) maximum;
}

double PositiveInteger::getMinimumValue() const
{
    return (double) getIntegerAttribute ("minimum", 0);
}

bool PositiveInteger::isMaximum (int64_t number) const
{
    return number == maximumValue || (double) number == getMaximumValue();
}

bool PositiveInteger::parseNumber (const juce::String& text, juce::String& error, const MemberSignature* signature)
{
    int64_t number = 0;
    if (! parseIntegerText (text, number, error, "Integer"))
        return false;
    if (isOneBased (signature) && number != 0 && ! isMaximum (number))
        --number;
    set (number);
    return true;
}

juce::String PositiveInteger::toString() const
{
    if (isOneBased() && ! isMaximum (value))
        return juce::String (value + 1);
    return juce::String (value);
}

} // namespace tov
