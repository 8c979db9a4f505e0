#include "Number.h"
#include "Angle.h"
#include "Boolean.h"
#include "Enumeration.h"
#include "NumberExpression.h"
#include "StringWithChoices.h"
#include "../Standard/ExecutionContext.h"
#include <cmath>

namespace tov
{

TOV_BEGIN_CLASS (Number, { "learnable", "true" })
TOV_END_CLASS()

//==============================================================================
bool Number::isBounded() const
{
    return ! isMinusInfinity (getMinimumValue()) && ! isPlusInfinity (getMaximumValue());
}

double Number::getMinimumValue() const
{
    return getRealAttribute ("minimum", minusInfinity);
}

double Number::getMaximumValue() const
{
    return getRealAttribute ("maximum", plusInfinity);
}

double Number::getSmallStep() const
{
    return isBounded() ? (getMaximumValue() - getMinimumValue()) / 1000.0 : 0.0;
}

double Number::getMarkerStep (double scale, double& ratio) const
{
    ratio = 10.0;
    return makeNumberValid (std::pow (10.0, roundHalfAwayFromZero (std::log10 (scale))));
}

juce::String Number::getNumberUnit() const
{
    return getStringAttribute ("unit");
}

double Number::makeNumberValid (double value) const
{
    return std::max (getMinimumValue(), std::min (getMaximumValue(), value));
}

bool Number::parseNumber (const juce::String& text, juce::String& error, const MemberSignature*)
{
    ToStringExecutionContext context (error);
    auto state = State::createFromStateString (context, text, "string");
    return state != nullptr && loadFromState (context, state);
}

//==============================================================================
Number* Number::create (Class* numberClass, double value, Object* parent)
{
    if (numberClass == nullptr)
        return nullptr;
    Object* object = numberClass->createObject (parent);
    auto* number = dynamic_cast<Number*> (object);
    if (number == nullptr)
    {
        if (object != nullptr)
            object->deleteThis();
        return nullptr;
    }
    number->makeValidAndSet (value);
    return number;
}

juce::String Number::evaluateNumberExpression (const juce::String& expression, juce::String& error)
{
    return NumberExpression::evaluate (expression, error);
}

double Number::getDefaultLargeValue() const
{
    const double maximum = getRealAttribute ("defaultLargeValue", getMaximumValue());
    return isPlusInfinity (maximum) ? 1.0 : maximum;
}

double Number::getDefaultSmallValue() const
{
    const double minimum = getRealAttribute ("defaultSmallValue", getMinimumValue());
    return isMinusInfinity (minimum) ? 0.0 : minimum;
}

double Number::getNormalizedValue() const
{
    const double minimum = getMinimumValue();
    const double maximum = getMaximumValue();
    if (! (maximum > minimum))
        return 0.0;
    return std::max (0.0, std::min (1.0, (getNumber() - minimum) / (maximum - minimum)));
}

double Number::roundHalfAwayFromZero (double value) noexcept
{
    return std::trunc (value > 0.0 ? value + 0.5 : value - 0.5);
}

int64_t Number::truncateToInteger64 (double value) noexcept
{
    // Out of range doubles have no defined conversion: the ends of the range stand for them.
    if (std::isnan (value))
        return 0;
    if (value >= 9223372036854775807.0)
        return std::numeric_limits<int64_t>::max();
    if (value <= -9223372036854775808.0)
        return std::numeric_limits<int64_t>::min();
    return (int64_t) value;
}

//==============================================================================
bool Number::isConvertibleTo (const Object& target) const
{
    if (getClass() == target.getClass()
        || dynamic_cast<const Boolean*> (&target) != nullptr
        || dynamic_cast<const StringWithChoices*> (&target) != nullptr
        || dynamic_cast<const Number*> (&target) != nullptr
        || dynamic_cast<const Enumeration*> (&target) != nullptr)
        return true;
    return Object::isConvertibleTo (target);
}

// Which of count choices the value selects: by its place in the range when bounded.
int Number::getIndexAmong (int count) const
{
    const double position = isBounded() ? getNormalizedValue() * count : getNumber();
    return (int) std::max ((int64_t) 0, std::min ((int64_t) count - 1, truncateToInteger64 (position)));
}

void Number::convertToObject (Object& target) const
{
    if (getClass() == target.getClass())
    {
        copyTo (target);
    }
    else if (auto* boolean = dynamic_cast<Boolean*> (&target))
    {
        boolean->set (isBounded() ? getNormalizedValue() >= 0.5 : getNumber() != 0.0);
    }
    else if (auto* choices = dynamic_cast<StringWithChoices*> (&target))
    {
        const int count = (int) choices->getChoices().size();
        if (count == 0)
            choices->reset();
        else
            choices->set (choices->getChoices()[(size_t) getIndexAmong (count)]);
    }
    else if (auto* enumeration = dynamic_cast<Enumeration*> (&target))
    {
        auto* enumerationClass = enumeration->getEnumerationClass();
        const int count = enumerationClass != nullptr ? (int) enumerationClass->getNumElements() : 0;
        if (count > 0)
            enumeration->set (enumerationClass->getElementValue ((size_t) getIndexAmong (count)));
    }
    else if (auto* number = dynamic_cast<Number*> (&target))
    {
        const bool bounded = isBounded();
        if (bounded && ! number->isBounded() && number->getClass() == &Angle::staticClass)
            number->setNumber ((2.0 * getNormalizedValue() - 1.0) * juce::MathConstants<double>::pi);
        else if (bounded && number->isBounded()
                 && (getMinimumValue() != number->getMinimumValue() || getMaximumValue() != number->getMaximumValue()))
            number->setNumber (number->makeNumberValid ((number->getMaximumValue() - number->getMinimumValue()) * getNormalizedValue()
                                                        + number->getMinimumValue()));
        else
            number->makeValidAndSet (getNumber());
    }
    else
    {
        Object::convertToObject (target);
    }
}

//==============================================================================
const MemberSignature* Number::getAttributeSignature (const MemberSignature* signature) const
{
    return signature != nullptr ? signature : getSignature();
}

bool Number::getBooleanAttribute (juce::StringRef name, bool defaultValue, const MemberSignature* signature) const
{
    return getClass()->getBooleanAttribute (getAttributeSignature (signature), name, defaultValue);
}

int64_t Number::getIntegerAttribute (juce::StringRef name, int64_t defaultValue, const MemberSignature* signature) const
{
    return getClass()->getIntegerAttribute (getAttributeSignature (signature), name, defaultValue);
}

double Number::getRealAttribute (juce::StringRef name, double defaultValue, const MemberSignature* signature) const
{
    return getClass()->getRealAttribute (getAttributeSignature (signature), name, defaultValue);
}

juce::String Number::getStringAttribute (juce::StringRef name, const juce::String& defaultValue, const MemberSignature* signature) const
{
    return getClass()->getStringAttribute (getAttributeSignature (signature), name, defaultValue);
}

} // namespace tov
