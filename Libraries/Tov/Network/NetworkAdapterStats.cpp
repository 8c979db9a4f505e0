#include "NetworkAdapterStats.h"

namespace tov
{

TOV_BEGIN_CLASS (NetworkAdapterStats)
    TOV_VARIABLE (name)
    TOV_VARIABLE (connected)
    TOV_VARIABLE (dhcp)
    TOV_VARIABLE (ipAddresses, { "jsonIdentifier", "\"addresses\"" })
TOV_END_CLASS()

bool NetworkAdapterStats::hasIpAddress (const HostIdentifier& identifier) const
{
    for (auto* address : ipAddresses)
        if (address->get() == identifier.get())
            return true;
    return false;
}

juce::String NetworkAdapterStats::toString() const
{
    juce::String result = name.get();
    if (ipAddresses.size() > 0)
    {
        juce::StringArray addresses;
        for (auto* address : ipAddresses)
            addresses.add (address->get());
        result += " (" + addresses.joinIntoString (", ") + ")";
    }
    if (! connected.get())
        result += " <disconnected>";
    if (dhcp.get())
        result += " <DHCP>";
    return result + "\n";
}

} // namespace tov
