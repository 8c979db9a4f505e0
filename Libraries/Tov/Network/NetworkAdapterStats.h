#pragma once

#include "HostIdentifier.h"
#include "../Atomic/Boolean.h"
#include "../Container/OwnedVector.h"

namespace tov
{

/** One network adapter of a machine: its name, whether it is connected, whether its
    addresses come from DHCP, and its IPv4 addresses. */
class NetworkAdapterStats : public Object
{
public:
    TOV_DECLARE_CLASS (NetworkAdapterStats, Object)

    String name;
    Boolean connected;
    Boolean dhcp;
    OwnedVector<HostIdentifier> ipAddresses;

    /** True when one of the addresses has the identifier's text. */
    bool hasIpAddress (const HostIdentifier& identifier) const;

    /** "name (address, address) <disconnected> <DHCP>" and a new line, each part as it applies. */
    juce::String toString() const override;
};

} // namespace tov
