#include "RemoteTargetIdentifier.h"

namespace tov
{

TOV_BEGIN_CLASS (RemoteTargetIdentifier)
    TOV_VARIABLE (targetIdentifier)
TOV_END_CLASS()

RemoteTargetIdentifier::RemoteTargetIdentifier()
{
    targetIdentifier.setParent (this);
}

bool RemoteTargetIdentifier::isValid() const
{
    return false;
}

bool RemoteTargetIdentifier::equalsSameClass (const Object& other) const
{
    auto* otherTarget = static_cast<const RemoteTargetIdentifier&> (other).getTargetIdentifier();
    auto* target = getTargetIdentifier();
    if (target == nullptr || otherTarget == nullptr)
        return target == otherTarget;
    return target->equals (*otherTarget);
}

juce::String RemoteTargetIdentifier::toString() const
{
    return targetIdentifier.get() != nullptr ? targetIdentifier->toString() : juce::String();
}

} // namespace tov
