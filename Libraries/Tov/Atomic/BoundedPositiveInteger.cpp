#include "BoundedPositiveInteger.h"
#include "IntegerBound.h"

namespace tov
{

TOV_BEGIN_CLASS (BoundedPositiveInteger, { "interpolationKey", "PositiveInteger" })
TOV_END_CLASS()

static constexpr bool comparesUnsigned = true;

void BoundedPositiveInteger::set (int64_t newValue, bool notify)
{
    setValueAndBound (newValue, bound, notify);
}

void BoundedPositiveInteger::setValueAndBound (int64_t newValue, int64_t newBound, bool notify)
{
    newValue = IntegerBound::limit (newValue, newBound, comparesUnsigned);
    if (newValue == value && newBound == bound)
        return;
    value = newValue;
    bound = newBound;
    if (notify)
        changed();
}

double BoundedPositiveInteger::getMaximumValue() const
{
    return bound != 0 ? (double) (uint64_t) (bound - 1) : PositiveInteger::getMaximumValue();
}

juce::String BoundedPositiveInteger::toString() const
{
    return IntegerBound::toString (value, bound);
}

bool BoundedPositiveInteger::parseNumber (const juce::String& text, juce::String& error, const MemberSignature*)
{
    int64_t newValue = 0, newBound = 0;
    if (! IntegerBound::parse (text, newValue, newBound, error))
        return false;
    setValueAndBound (newValue, newBound);
    return true;
}

bool BoundedPositiveInteger::equalsSameClass (const Object& other) const
{
    auto& integer = static_cast<const BoundedPositiveInteger&> (other);
    return value == integer.value && bound == integer.bound;
}

void BoundedPositiveInteger::copyTo (Object& target) const
{
    PositiveInteger::copyTo (target);
    if (auto* integer = dynamic_cast<BoundedPositiveInteger*> (&target))
        integer->bound = bound;
}

void BoundedPositiveInteger::save (ObjectExporter& exporter) const
{
    IntegerBound::save (exporter, value, bound);
}

bool BoundedPositiveInteger::load (ObjectImporter& importer)
{
    int64_t newValue = value, newBound = bound;
    if (! IntegerBound::load (importer, newValue, newBound, comparesUnsigned, "BoundedPositiveInteger::load"))
        return false;
    setValueAndBound (newValue, newBound);
    return true;
}

} // namespace tov
