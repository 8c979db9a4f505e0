#pragma once

#include <juce_core/juce_core.h>
#include <vector>

namespace tov
{

/** The IPv4 addresses of the machine's network adapters, as one snapshot.

    JUCE's IPAddress cannot tell which adapter holds an address, whether that adapter is
    connected, or whether the address came from DHCP; this table answers those questions.
    The snapshot is read from getifaddrs, in the calling thread's network namespace:
    - the adapter's name is the interface name without its ":label" part;
    - an adapter is connected when it is up and running (it has a carrier);
    - an address is a DHCP one when the kernel does not hold it as permanent, that is when
      it has a finite lifetime, as a DHCP lease gives it (asked through rtnetlink).
*/
class NetworkInterfaceTable
{
public:
    struct Entry
    {
        juce::IPAddress address;
        juce::String adapterName;
        bool connected = false;
        bool dhcp = false;
    };

    NetworkInterfaceTable() = default;
    explicit NetworkInterfaceTable (std::vector<Entry> entries) : entries (std::move (entries)) {}

    /** The table of this machine now; empty when the system cannot be asked. */
    static NetworkInterfaceTable readFromSystem();

    const std::vector<Entry>& getEntries() const noexcept  { return entries; }

    /** Appends the IPv4 addresses, of connected adapters only when onlyConnected is true. */
    void findAllAddresses (juce::Array<juce::IPAddress>& results, bool onlyConnected) const;
    /** True when the address is held by the machine and came from DHCP. */
    bool isDHCPInterface (const juce::IPAddress& address) const;
    /** The name of the adapter that holds the address; empty when none does. */
    juce::String getInterfaceFriendlyName (const juce::IPAddress& address) const;

private:
    std::vector<Entry> entries;

    const Entry* findEntry (const juce::IPAddress& address) const;
};

} // namespace tov
