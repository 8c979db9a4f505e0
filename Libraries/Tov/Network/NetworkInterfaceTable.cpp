#include "NetworkInterfaceTable.h"
#include "NetlinkAddressReader.h"
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

namespace tov
{

namespace
{
juce::String getAdapterName (const char* interfaceName)
{
    return juce::String (interfaceName).upToFirstOccurrenceOf (":", false, false);
}

bool isConnected (unsigned int interfaceFlags)
{
    return (interfaceFlags & IFF_UP) != 0 && (interfaceFlags & IFF_RUNNING) != 0;
}

/** The rtnetlink answer is needed for the DHCP question alone: without it, no address is a DHCP one. */
bool isNonPermanent (const std::vector<NetlinkAddressReader::Address>& kernelAddresses, const juce::IPAddress& address)
{
    for (const auto& entry : kernelAddresses)
        if (entry.address == address)
            return ! entry.isPermanent();
    return false;
}
} // namespace

NetworkInterfaceTable NetworkInterfaceTable::readFromSystem()
{
    std::vector<Entry> entries;
    ifaddrs* interfaces = nullptr;
    if (::getifaddrs (&interfaces) != 0)
        return {};

    std::vector<NetlinkAddressReader::Address> kernelAddresses;
    NetlinkAddressReader::readFromKernel (kernelAddresses);

    for (auto* interface = interfaces; interface != nullptr; interface = interface->ifa_next)
    {
        if (interface->ifa_addr == nullptr || interface->ifa_addr->sa_family != AF_INET)
            continue;
        const auto& socketAddress = *reinterpret_cast<const sockaddr_in*> (interface->ifa_addr);
        Entry entry;
        entry.address = juce::IPAddress ((const juce::uint8*) &socketAddress.sin_addr.s_addr, false);
        entry.adapterName = getAdapterName (interface->ifa_name);
        entry.connected = isConnected (interface->ifa_flags);
        entry.dhcp = isNonPermanent (kernelAddresses, entry.address);
        entries.push_back (entry);
    }
    ::freeifaddrs (interfaces);
    return NetworkInterfaceTable (std::move (entries));
}

//==============================================================================
void NetworkInterfaceTable::findAllAddresses (juce::Array<juce::IPAddress>& results, bool onlyConnected) const
{
    for (const auto& entry : entries)
        if (entry.connected || ! onlyConnected)
            results.addIfNotAlreadyThere (entry.address);
}

bool NetworkInterfaceTable::isDHCPInterface (const juce::IPAddress& address) const
{
    auto* entry = findEntry (address);
    return entry != nullptr && entry->dhcp;
}

juce::String NetworkInterfaceTable::getInterfaceFriendlyName (const juce::IPAddress& address) const
{
    auto* entry = findEntry (address);
    return entry != nullptr ? entry->adapterName : juce::String();
}

const NetworkInterfaceTable::Entry* NetworkInterfaceTable::findEntry (const juce::IPAddress& address) const
{
    for (const auto& entry : entries)
        if (entry.address == address)
            return &entry;
    return nullptr;
}

} // namespace tov
