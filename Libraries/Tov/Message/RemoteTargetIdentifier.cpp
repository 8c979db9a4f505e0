#include "RemoteTargetIdentifier.h"

namespace tov
{

TOV_BEGIN_CLASS (RemoteTargetIdentifier)
    TOV_VARIABLE (connectionIdentifier)
    TOV_VARIABLE (targetIdentifier)
TOV_END_CLASS()

RemoteTargetIdentifier::RemoteTargetIdentifier()
{
    targetIdentifier.setParent (this);
}

RemoteTargetIdentifier::RemoteTargetIdentifier (const InterprocessConnectionIdentifier& connection, const Object& target)
    : RemoteTargetIdentifier (connection, target.clone())
{
}

RemoteTargetIdentifier::RemoteTargetIdentifier (const InterprocessConnectionIdentifier& connection, Object* target)
    : RemoteTargetIdentifier()
{
    connection.copyTo (connectionIdentifier);
    targetIdentifier.set (target, false);
}

bool RemoteTargetIdentifier::isValid() const
{
    return connectionIdentifier.isValid() && targetIdentifier.get() != nullptr;
}

bool RemoteTargetIdentifier::equalsSameClass (const Object& other) const
{
    auto& otherIdentifier = static_cast<const RemoteTargetIdentifier&> (other);
    if (! connectionIdentifier.equals (otherIdentifier.connectionIdentifier))
        return false;
    auto* otherTarget = otherIdentifier.getTargetIdentifier();
    auto* target = getTargetIdentifier();
    if (target == nullptr || otherTarget == nullptr)
        return target == otherTarget;
    return target->equals (*otherTarget);
}

juce::String RemoteTargetIdentifier::toString() const
{
    const juce::String target = targetIdentifier.get() != nullptr ? targetIdentifier->toString() : juce::String();
    return connectionIdentifier.isValid() ? target + "@" + connectionIdentifier.toString ("->", {}) : target;
}

} // namespace tov
