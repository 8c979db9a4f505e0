#include "NetworkStats.h"
#include "NetworkInterfaceTable.h"
#include "NetworkStatsProvider.h"
#include <map>
#include <set>

namespace tov
{

TOV_BEGIN_CLASS (NetworkStats)
    TOV_VARIABLE (hostName)
    TOV_VARIABLE (networkAdapters)
TOV_END_CLASS()

void NetworkStats::refreshFromLocalSystem()
{
    refreshFrom (juce::SystemStats::getComputerName(), NetworkInterfaceTable::readFromSystem());
}

namespace
{
struct AdapterPicture
{
    std::set<juce::IPAddress> addresses;
    bool dhcp = false;
    bool connected = false;
};

NetworkAdapterStats* createAdapterStats (const juce::String& name, const AdapterPicture& picture)
{
    auto* adapter = new NetworkAdapterStats();
    adapter->name.set (name, false);
    adapter->connected.set (picture.connected, false);
    adapter->dhcp.set (picture.dhcp, false);
    for (const auto& address : picture.addresses)
        adapter->ipAddresses.append (new HostIdentifier (address.toString()), false);
    return adapter;
}
} // namespace

void NetworkStats::refreshFrom (const juce::String& computerName, const NetworkInterfaceTable& table)
{
    hostName.set (computerName);

    juce::Array<juce::IPAddress> allAddresses, connectedAddresses;
    table.findAllAddresses (allAddresses, false);
    allAddresses.removeAllInstancesOf (juce::IPAddress::local (false));
    table.findAllAddresses (connectedAddresses, true);

    // When an adapter has several addresses, the last one decides its flags.
    std::map<juce::String, AdapterPicture> adapters;
    for (const auto& address : allAddresses)
    {
        auto& picture = adapters[table.getInterfaceFriendlyName (address)];
        picture.addresses.insert (address);
        picture.dhcp = table.isDHCPInterface (address);
        picture.connected = connectedAddresses.contains (address);
    }

    networkAdapters.clear();
    for (const auto& [name, picture] : adapters)
        networkAdapters.append (createAdapterStats (name, picture));
}

//==============================================================================
const NetworkAdapterStats* NetworkStats::findNetworkAdapterFromIp (const HostIdentifier& identifier) const
{
    for (auto* adapter : networkAdapters)
        if (adapter->hasIpAddress (identifier))
            return adapter;
    return nullptr;
}

bool NetworkStats::matchHostIdentifier (const HostIdentifier& identifier) const
{
    return identifier.get() == hostName.get() || findNetworkAdapterFromIp (identifier) != nullptr;
}

juce::String NetworkStats::toFriendlyString (bool includeDisconnected) const
{
    juce::String result = "Host Name: " + hostName.get() + "\n";
    for (auto* adapter : networkAdapters)
        if (adapter->connected.get() || includeDisconnected)
            result += "Adapter: " + adapter->toString();
    return result;
}

const NetworkStats* NetworkStats::get (const Object& object)
{
    for (const Object* level = object.getParent(); level != nullptr; level = level->getParent())
        if (auto* provider = dynamic_cast<const NetworkStatsProvider*> (level))
            return provider->getNetworkStats();
    return nullptr;
}

} // namespace tov
