#pragma once

#include "LocalNetworkAddress.h"
#include "NetworkAddress.h"

namespace tov
{

/** What makes a connection itself: the local ip and port it is bound to, and the remote host
    and port. Two identifiers that are equal name the same connection; a later connection from
    the same machine has other ports, and so another identifier. */
class InterprocessConnectionIdentifier : public Object
{
public:
    TOV_DECLARE_CLASS (InterprocessConnectionIdentifier, Object)

    LocalNetworkAddress localNetworkAddress;
    NetworkAddress remoteNetworkAddress;

    /** The local side has an ip or a port. */
    bool isLocalSideSet() const noexcept;
    /** The remote side has a host or a port above 1: 1, the lowest a remote port can be, stands
        for none, and so does the 0 of a port never set. */
    bool isRemoteSideSet() const noexcept;
    /** Both sides are set. */
    bool isValid() const noexcept                   { return isLocalSideSet() && isRemoteSideSet(); }

    /** The local address and the separator when the local side is set, the remote address,
        then " (name)" when the name is neither empty nor the remote host. */
    juce::String toString (const juce::String& separator, const juce::String& name) const;
    juce::String toString() const override          { return toString ({}, {}); }
};

} // namespace tov
