#pragma once

#include "DatagramSocketHolder.h"
#include "HostIdentifier.h"
#include "LocalNetworkAddress.h"
#include "NetworkPort.h"
#include "../Atomic/Seconds.h"
#include "../Pointer/WeakPointer.h"
#include "../Standard/ExecutionContext.h"
#include "../Standard/MillisecondClock.h"

namespace tov
{

/** Announces a server to the local network: every period, one "Alife" packet, a UDP datagram
    to the broadcast address of the local adapter, carrying the binary State of an object that
    the application chooses (deep, with its class and identifier). Nothing else frames it.

    There is no thread: the owner calls updateBroadcasting from its own loop, as often as it
    likes, and a packet leaves when a period has passed. A packet that fails to leave is reported,
    as an error, to the context given at the start, and the next try waits a whole period.
    Ports and periods are the application's: this class holds no defaults for them.
*/
class NetworkBroadcaster : public Object
{
public:
    TOV_DECLARE_CLASS (NetworkBroadcaster, Object)

    static constexpr double defaultPeriodInSeconds = 1.0;

    NetworkBroadcaster();

    LocalNetworkAddress localNetworkAddress;
    NetworkPort remotePort;
    Seconds periodInSeconds;

    /** Binds the socket to the local ip and port, and aims at the broadcast address of that ip's
        adapter on the remote port; the first packet leaves one period later. When broadcasting
        already, answers true and keeps the settings it has. */
    bool startBroadcasting (ExecutionContext& context, const juce::String& localIp, size_t localPort,
                            size_t remotePort, double periodInSeconds);
    void stopBroadcasting();
    bool isBroadcasting() const noexcept                 { return broadcasting; }

    /** Broadcasting, and a period has passed since the last packet (or none was sent yet). */
    bool shouldSendAlifePacket() const;
    /** Sends the object's packet when it is time; whatever the outcome, the next one is a period later. */
    void updateBroadcasting (const Object& information);

    /** Where the packets go: the broadcast address of the local ip's adapter. */
    const juce::String& getRemoteHost() const noexcept   { return remoteHost.get(); }

    /** The words of a socket write that gave numSent for size bytes: false, with the reason in
        error, unless everything left. */
    static bool checkSentSize (int numSent, int size, juce::String& error);

    void setMillisecondClock (MillisecondClock newClock) noexcept  { clock = newClock; }

protected:
    /** The socket, which the layer below may shut down; it is bound again before the next packet. */
    juce::DatagramSocket& getSocket() noexcept           { return socket.get(); }

private:
    HostIdentifier remoteHost;
    DatagramSocketHolder socket { true };
    bool broadcasting = false;
    double lastSendTimeInMs = 0.0;
    WeakPointer<ExecutionContext> context;
    MillisecondClock clock = systemMillisecondClock;

    bool bindSocket();
    bool sendAlifePacket (const Object& information, juce::String& error);
};

} // namespace tov
