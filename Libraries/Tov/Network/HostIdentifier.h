#pragma once

#include "../Atomic/String.h"

namespace tov
{

class ExecutionContext;

/** A host: a dotted IPv4 address or a host name. */
class HostIdentifier : public String
{
public:
    TOV_DECLARE_CLASS (HostIdentifier, String)

    using String::String;

    static const juce::String any;        ///< "0.0.0.0", every adapter
    static const juce::String localhost;  ///< "127.0.0.1"
    static const juce::String broadcast;  ///< "255.255.255.255"

    /** True when one of the machine's IPv4 addresses, connected or not, is this text. */
    bool isLocalIPAddress() const;
    /** True when one of the machine's IPv4 addresses is the text; with onlyConnected, only
        addresses of connected adapters count. An empty text is false. */
    static bool isLocalIPAddress (juce::StringRef ip, bool onlyConnected);

    unsigned int getNativeEndian32BitFromIpV4() const;
    /** ((a * 256 + b) * 256 + c) * 256 + d of a text "a.b.c.d", without range checks; 0 for a
        text without exactly four parts. */
    static unsigned int getNativeEndian32BitFromIpV4 (juce::StringRef text);
    /** The four bytes from the most significant one, in decimal, joined by ".". */
    static juce::String getIpV4StringFromNativeEndian32Bit (unsigned int address);

    /** The ip to bind for a configured local ip: any when the ip is not one of this machine's,
        with a warning; otherwise the ip itself, with a warning when its adapter uses DHCP or is
        disconnected, since such an address may come back. */
    static juce::String getLocalIpOrAnyWithWarning (ExecutionContext& context, const juce::String& ip);
};

} // namespace tov
