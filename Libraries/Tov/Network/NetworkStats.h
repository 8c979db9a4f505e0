#pragma once

#include "NetworkAdapterStats.h"

namespace tov
{

class NetworkInterfaceTable;

/** The network picture of a machine: its host name and its adapters in name order.

    A value without a lock: a holder that refreshes it shares it by replacing it.
*/
class NetworkStats : public Object
{
public:
    TOV_DECLARE_CLASS (NetworkStats, Object)

    HostIdentifier hostName;
    OwnedVector<NetworkAdapterStats> networkAdapters;

    /** Reads the computer's name and its adapters, blocking on the system's tables. */
    void refreshFromLocalSystem();
    /** Builds the picture from a computer name and a table of adapter addresses. */
    void refreshFrom (const juce::String& computerName, const NetworkInterfaceTable& table);

    /** The first adapter that holds an address of the identifier's text; null when none does. */
    const NetworkAdapterStats* findNetworkAdapterFromIp (const HostIdentifier& identifier) const;
    /** True when the identifier is the host name or an address of one of the adapters. */
    bool matchHostIdentifier (const HostIdentifier& identifier) const;

    /** "Host Name: " and a line per adapter, connected ones only unless includeDisconnected. */
    juce::String toFriendlyString (bool includeDisconnected) const;

    /** The stats of the nearest NetworkStatsProvider among the object's parents; null when
        there is none. */
    static const NetworkStats* get (const Object& object);
};

} // namespace tov
