#include "LocalNetworkAddress.h"
#include "HostIdentifier.h"

namespace tov
{

TOV_BEGIN_CLASS (LocalNetworkAddress)
    TOV_VARIABLE (localIp)
    TOV_VARIABLE (localPort)
TOV_END_CLASS()

void LocalNetworkAddress::set (const juce::String& newLocalIp, unsigned int newLocalPort, bool notify)
{
    localIp.set (newLocalIp, notify);
    localPort.set ((int64_t) newLocalPort, notify);
}

juce::String LocalNetworkAddress::toString() const
{
    const juce::String ip = localIp.get() == HostIdentifier::any ? juce::String ("Any") : localIp.get();
    return ip + ":" + localPort.toString();
}

} // namespace tov
