#pragma once

#include "ConnectionTestSupport.h"
#include "NetworkTestSupport.h"
#include "ServerAnnouncement.h"
#include <Tov/Network/LastNetworkServerFootprint.h>
#include <Tov/Network/NetworkBroadcaster.h>
#include <Tov/Network/NetworkDiscoverer.h>
#include <gtest/gtest.h>

// Sockets and packets for the tests of broadcasting and discovery, on loopback or on the
// adapters of a network namespace.
namespace tov::test
{

/** A UDP port that nobody was bound to a moment ago. */
int findFreeUdpPort();

/** The bytes of the "Alife" packet of the object: its deep State with class and identifier, in
    the binary form. */
juce::MemoryBlock alifePacketOf (const Object& information);

/** A plain UDP socket of its own on 127.0.0.1, for packets that no broadcaster would send and
    for looking at what one did send. */
class DatagramEnd
{
public:
    /** Bound to the port, or to one the system chooses for 0. */
    explicit DatagramEnd (int port = 0);

    int getPort() const                                  { return socket.getBoundPort(); }
    /** Sends the bytes to 127.0.0.1 at the port; false unless all left. */
    bool send (const void* data, size_t size, int port);
    bool send (const juce::MemoryBlock& block, int port)  { return send (block.getData(), block.getSize(), port); }
    /** The next datagram, and the port it came from, waiting for it at most the time-out;
        false when none came. */
    bool receive (juce::MemoryBlock& packet, int timeOutMilliseconds = 20000, int* senderPort = nullptr);

private:
    juce::DatagramSocket socket;
};

/** Polls until a footprint was read, at most the time-out; false when none came. */
bool pollUntilFootprint (NetworkDiscoverer& discoverer, ExecutionContext& context, LastNetworkServerFootprint& footprint,
                         int timeOutMilliseconds = 20000);

/** Runs the body in a network namespace of its own with a veth pair, "disc1" (10.61.0.1) and
    "disc2" (10.61.0.2), on one subnet whose broadcast address is 10.61.0.255: loopback has no
    broadcast address. False, with the reason, where the namespace cannot be made. */
bool runInVethNamespace (const std::function<void()>& body, juce::String& failure);

/** Runs the lambda in the veth namespace, or skips the test with the reason. */
#define TOV_RUN_IN_VETH_NAMESPACE(...) \
    do { juce::String failure; \
         if (! ::tov::test::runInVethNamespace (__VA_ARGS__, failure)) GTEST_SKIP() << failure.toStdString(); } while (false)

} // namespace tov::test
