#include "BoundedMemorySize.h"
#include "IntegerBound.h"

namespace tov
{

TOV_BEGIN_CLASS (BoundedMemorySize, { "interpolationKey", "MemorySize" })
TOV_END_CLASS()

static constexpr bool comparesUnsigned = false;

void BoundedMemorySize::set (int64_t newValue, bool notify)
{
    setValueAndBound (newValue, bound, notify);
}

void BoundedMemorySize::setValueAndBound (int64_t newValue, int64_t newBound, bool notify)
{
    newValue = IntegerBound::limit (newValue, newBound, comparesUnsigned);
    if (newValue == value && newBound == bound)
        return;
    value = newValue;
    bound = newBound;
    if (notify)
        changed();
}

double BoundedMemorySize::getMaximumValue() const
{
    return bound != 0 ? (double) (bound - 1) : MemorySize::getMaximumValue();
}

juce::String BoundedMemorySize::toString() const
{
    return IntegerBound::toString (value, bound, getNumberUnit());
}

bool BoundedMemorySize::parseNumber (const juce::String& text, juce::String& error, const MemberSignature*)
{
    int64_t newValue = 0, newBound = 0;
    if (! IntegerBound::parse (text, newValue, newBound, error))
        return false;
    setValueAndBound (newValue, newBound);
    return true;
}

bool BoundedMemorySize::equalsSameClass (const Object& other) const
{
    auto& size = static_cast<const BoundedMemorySize&> (other);
    return value == size.value && bound == size.bound;
}

void BoundedMemorySize::copyTo (Object& target) const
{
    MemorySize::copyTo (target);
    if (auto* size = dynamic_cast<BoundedMemorySize*> (&target))
        size->bound = bound;
}

void BoundedMemorySize::save (ObjectExporter& exporter) const
{
    IntegerBound::save (exporter, value, bound);
}

bool BoundedMemorySize::load (ObjectImporter& importer)
{
    int64_t newValue = value, newBound = bound;
    if (! IntegerBound::load (importer, newValue, newBound, comparesUnsigned, "BoundedMemorySize::load"))
        return false;
    setValueAndBound (newValue, newBound);
    return true;
}

} // namespace tov
