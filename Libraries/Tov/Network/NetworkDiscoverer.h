#pragma once

#include "DatagramSocketHolder.h"
#include "LocalNetworkAddress.h"

namespace tov
{

class ExecutionContext;
class LastNetworkServerFootprint;

/** Listens for the "Alife" packets of NetworkBroadcaster and rebuilds the object each carries.

    Polled, never waiting: getNetworkServerFootPrint reads at most one packet, and allocates
    nothing when none has arrived, so that it can run on every pass of a service's loop. A
    caller drains the socket by calling until the answer is false. A bad packet is a warning
    and a false answer; the next poll goes on.

    Linux delivers no broadcast to a socket bound to a unicast address, so the socket listens on
    every adapter at the configured port; the texts keep the configured address.
*/
class NetworkDiscoverer
{
public:
    /** Room for the largest packet; a datagram that fills it may have been cut. */
    static constexpr int bufferSize = 0x10000;

    NetworkDiscoverer();

    /** Listens on the address's port, sharing it with other programs when reusePort is set;
        false, with an error, when the port cannot be bound. */
    bool startDiscovering (ExecutionContext& context, const LocalNetworkAddress& address, bool reusePort);
    void stopDiscovering();

    /** One poll: true when a packet was read and loaded into the footprint, which keeps its old
        content otherwise. */
    bool getNetworkServerFootPrint (ExecutionContext& context, LastNetworkServerFootprint& footprint);

    /** Takes a packet that the socket gave, or that came some other way: size bytes copied to the
        start of the buffer, unless data already is the buffer (and beyond its room, cut). Parsing
        reads the whole buffer, so bytes of an earlier, longer packet may still follow. */
    bool readPacket (ExecutionContext& context, LastNetworkServerFootprint& footprint, const void* data, int size,
                     const juce::String& senderIp, int senderPort);

    bool isReusingPort() const noexcept                     { return reusingPort; }
    bool isDiscovering() const noexcept                     { return discovering; }
    const LocalNetworkAddress& getLocalAddress() const noexcept  { return localAddress; }

private:
    DatagramSocketHolder socket { false };
    juce::MemoryBlock buffer;
    LocalNetworkAddress localAddress;
    bool reusingPort = false;
    bool discovering = false;

    /** Where the texts say the packet came: the configured address and the sender. */
    juce::String describeSocket (const juce::String& sender) const;

    JUCE_DECLARE_NON_COPYABLE (NetworkDiscoverer)
};

} // namespace tov
