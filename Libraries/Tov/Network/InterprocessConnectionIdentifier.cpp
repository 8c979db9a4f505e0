#include "InterprocessConnectionIdentifier.h"

namespace tov
{

TOV_BEGIN_CLASS (InterprocessConnectionIdentifier)
    TOV_VARIABLE (localNetworkAddress)
    TOV_VARIABLE (remoteNetworkAddress)
TOV_END_CLASS()

bool InterprocessConnectionIdentifier::isLocalSideSet() const noexcept
{
    return localNetworkAddress.getLocalIp().isNotEmpty() || localNetworkAddress.getLocalPort() != 0;
}

bool InterprocessConnectionIdentifier::isRemoteSideSet() const noexcept
{
    return remoteNetworkAddress.getHost().isNotEmpty() || remoteNetworkAddress.getPort() > 1;
}

juce::String InterprocessConnectionIdentifier::toString (const juce::String& separator, const juce::String& name) const
{
    juce::String result;
    if (isLocalSideSet())
        result << localNetworkAddress.toString() << separator;
    result << remoteNetworkAddress.toString();
    if (name.isNotEmpty() && name != remoteNetworkAddress.getHost())
        result << " (" << name << ")";
    return result;
}

} // namespace tov
