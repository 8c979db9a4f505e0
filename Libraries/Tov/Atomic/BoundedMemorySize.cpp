#include "BoundedMemorySize.h"

namespace tov
{

TOV_BEGIN_CLASS (BoundedMemorySize, { "interpolationKey", "MemorySize" })
TOV_END_CLASS()

juce::String BoundedMemorySize::toString() const
{
    return IntegerBound::toString (value, getBound(), getNumberUnit());
}

} // namespace tov
