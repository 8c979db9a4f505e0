#include "LastNetworkServerFootprint.h"

namespace tov
{

TOV_BEGIN_CLASS (LastNetworkServerFootprint)
    TOV_VARIABLE (address)
    TOV_VARIABLE (aliveTime)
    TOV_VARIABLE (information)
TOV_END_CLASS()

void LastNetworkServerFootprint::set (const NetworkAddress& sender, Object* rebuiltInformation, bool notify)
{
    address.set (sender.getHost(), sender.getPort(), notify);
    information.set (rebuiltInformation, notify);
    aliveTime.set (juce::Time::getCurrentTime(), notify);
}

} // namespace tov
