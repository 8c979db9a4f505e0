// Discovery through real broadcast packets, which loopback cannot carry: each test builds a
// veth pair in a network namespace of its own (see runInVethNamespace).
#include "DiscoveryTestSupport.h"
#include "Support/LogTestSupport.h"
#include "Support/RecordingExecutionContext.h"
#include "Support/TestValues.h"
#include "Support/Waiting.h"

using namespace tov;
using namespace tov::test;
using tov::testing::RecordingExecutionContext;

namespace
{
constexpr int broadcastPort = 40001, listenPort = 40000;

/** A broadcaster on disc1 whose first packet is due at once, on the manual clock. */
bool startBroadcaster (NetworkBroadcaster& broadcaster, ExecutionContext& context)
{
    ManualClock::now = 1000.0;
    broadcaster.setMillisecondClock (&ManualClock::get);
    const bool started = broadcaster.startBroadcasting (context, "10.61.0.1", broadcastPort, listenPort, 1.0);
    ManualClock::now = 3000.0;
    return started;
}

class DiscoveryNamespaceTest : public ::testing::Test
{
protected:
    RecordingExecutionContext context;
    Owned<ServerAnnouncement> announcement { ServerAnnouncement::create ("render-1", 7000, 0x1234) };

    void SetUp() override
    {
        ensureNetworkTestLibrary();
    }
};

class NetworkBroadcasterNamespaceTest : public DiscoveryNamespaceTest {};
class NetworkDiscovererNamespaceTest : public DiscoveryNamespaceTest {};
} // namespace

TEST_F (NetworkBroadcasterNamespaceTest, PacketsAimAtTheBroadcastAddressOfTheLocalIpsAdapter)
{
    juce::String remoteHost;
    bool started = false;
    TOV_RUN_IN_VETH_NAMESPACE ([&]
    {
        NetworkBroadcaster broadcaster;
        started = startBroadcaster (broadcaster, context);
        remoteHost = broadcaster.getRemoteHost();
    });
    EXPECT_TRUE (started);
    EXPECT_EQ (remoteHost, "10.61.0.255");
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (NetworkDiscovererNamespaceTest, DiscoverersSharingAPortEachHearEveryBroadcast)
{
    bool heard[2] = { false, false };
    juce::String senders[2];
    bool equal[2] = { false, false };
    TOV_RUN_IN_VETH_NAMESPACE ([&]
    {
        NetworkDiscoverer discoverers[2];
        LastNetworkServerFootprint footprints[2];
        if (! discoverers[0].startDiscovering (context, LocalNetworkAddress ("10.61.0.2", listenPort), true)
            || ! discoverers[1].startDiscovering (context, LocalNetworkAddress (HostIdentifier::any, listenPort), true))
            return;
        NetworkBroadcaster broadcaster;
        if (! startBroadcaster (broadcaster, context))
            return;
        broadcaster.updateBroadcasting (*announcement);
        for (int i = 0; i < 2; ++i)
        {
            heard[i] = pollUntilFootprint (discoverers[i], context, footprints[i]);
            senders[i] = footprints[i].getAddress().toString();
            equal[i] = heard[i] && footprints[i].getInformation()->equals (*announcement);
        }
    });
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_TRUE (heard[i]) << i;
        EXPECT_EQ (senders[i], "10.61.0.1:" + juce::String (broadcastPort)) << i;
        EXPECT_TRUE (equal[i]) << i;
    }
    EXPECT_TRUE (context.errors.empty());
    EXPECT_TRUE (context.warnings.empty());
}

TEST_F (NetworkDiscovererNamespaceTest, GivenOneAdaptersIpItHearsTheBroadcastAndKeepsTheIpInItsTexts)
{
    bool heard = false, badPacketRead = true;
    TOV_RUN_IN_VETH_NAMESPACE ([&]
    {
        NetworkDiscoverer discoverer;
        LastNetworkServerFootprint footprint;
        if (! discoverer.startDiscovering (context, LocalNetworkAddress ("10.61.0.2", listenPort), false))
            return;
        NetworkBroadcaster broadcaster;
        if (! startBroadcaster (broadcaster, context))
            return;
        broadcaster.updateBroadcasting (*announcement);
        heard = pollUntilFootprint (discoverer, context, footprint);

        juce::DatagramSocket stranger (true);
        stranger.bindToPort (40002, "10.61.0.1");
        stranger.write ("10.61.0.255", listenPort, "hello", 5);
        badPacketRead = waitUntil ([&] { return discoverer.getNetworkServerFootPrint (context, footprint) || ! context.warnings.empty(); });
    });
    EXPECT_TRUE (heard);
    EXPECT_TRUE (badPacketRead);
    EXPECT_EQ (context.warnings, std::vector<juce::String> {
        "NetworkDiscoverer with socket 10.61.0.2:40000 <- 10.61.0.1:40002 could not load discovered state:Unexpected binary stream version: 40" });
}

