// Adapter tests on real adapters: each builds veth pairs in a network namespace of its own.
// An address with a finite lifetime stands for a DHCP lease; a veth whose peer is down has
// no carrier and stands for a disconnected adapter.
#include "NetworkTestSupport.h"
#include "Support/RecordingExecutionContext.h"
#include "Support/TestProcess.h"

using namespace tov;
using namespace tov::test;
using tov::testing::RecordingExecutionContext;

namespace
{
/** Adapters: "wired" (10.20.0.1, static, connected through its peer "wiredpeer"), "lease"
    (10.30.0.1, finite lifetime, connected through "leasepeer"), "unplugged" (10.40.0.1 and,
    under the label "unplugged:2", 10.40.0.9, static, its peer down). */
const juce::StringArray adapterSetup {
    "ip link set lo up",
    "ip link add wired type veth peer name wiredpeer",
    "ip addr add 10.20.0.1/24 dev wired",
    "ip link set wired up && ip link set wiredpeer up",
    "ip link add lease type veth peer name leasepeer",
    "ip addr add 10.30.0.1/24 dev lease valid_lft 3600 preferred_lft 3600",
    "ip link set lease up && ip link set leasepeer up",
    "ip link add unplugged type veth peer name unpluggedpeer",
    "ip addr add 10.40.0.9/24 dev unplugged label unplugged:2",
    "ip addr add 10.40.0.1/24 dev unplugged",
    "ip link set unplugged up",
    NetworkNamespace::waitForLinkState ("wired", "UP"),
    NetworkNamespace::waitForLinkState ("lease", "UP"),
    NetworkNamespace::waitForLinkState ("unplugged", "LOWERLAYERDOWN")
};

struct Warned
{
    juce::String answer;
    std::vector<juce::String> warnings;
};

Warned getLocalIp (const juce::String& ip)
{
    RecordingExecutionContext context;
    Warned result;
    result.answer = HostIdentifier::getLocalIpOrAnyWithWarning (context, ip);
    result.warnings = context.warnings;
    return result;
}

#define TOV_RUN_IN_NETWORK_NAMESPACE(...) \
    do { juce::String failure; \
         if (! NetworkNamespace::run (adapterSetup, __VA_ARGS__, failure)) GTEST_SKIP() << failure.toStdString(); } while (false)
}

TEST (NetworkStatsNamespaceTest, AdaptersOfTheNamespaceWithTheirStates)
{
    juce::String friendly, connectedOnly;
    TOV_RUN_IN_NETWORK_NAMESPACE ([&]
    {
        NetworkStats stats;
        stats.refreshFromLocalSystem();
        friendly = stats.toFriendlyString (true);
        connectedOnly = stats.toFriendlyString (false);
    });
    const juce::String host = "Host Name: " + juce::SystemStats::getComputerName() + "\n";
    EXPECT_EQ (friendly, host
                         + "Adapter: lease (10.30.0.1) <DHCP>\n"
                         + "Adapter: unplugged (10.40.0.1, 10.40.0.9) <disconnected>\n"
                         + "Adapter: wired (10.20.0.1)\n");
    EXPECT_EQ (connectedOnly, host
                              + "Adapter: lease (10.30.0.1) <DHCP>\n"
                              + "Adapter: wired (10.20.0.1)\n");
}

TEST (NetworkStatsNamespaceTest, ChoicesAndAnnotationsOfTheNamespacesAdapters)
{
    std::vector<juce::String> choices;
    juce::StringArray annotations;
    TOV_RUN_IN_NETWORK_NAMESPACE ([&]
    {
        LocalIp ip;
        choices = ip.getChoices();
        for (const auto& choice : choices)
            annotations.add (choice + " " + ip.getChoiceAnnotation (choice));
    });
    const std::vector<juce::String> expected { "0.0.0.0", "127.0.0.1", "10.30.0.1", "10.40.0.1", "10.40.0.9", "10.20.0.1" };
    EXPECT_EQ (choices, expected);
    EXPECT_EQ (annotations.joinIntoString ("|"),
               "0.0.0.0 (Any Interface)|127.0.0.1 (Local Host)|10.30.0.1 <dhcp> (lease)|10.40.0.1 <disconnected> (unplugged)|"
               "10.40.0.9 <disconnected> (unplugged)|10.20.0.1 (wired)");
}

TEST (NetworkStatsNamespaceTest, AnUnpluggedLeaseIsDisconnectedThenDhcp)
{
    juce::String annotation;
    TOV_RUN_IN_NETWORK_NAMESPACE ([&]
    {
        TestProcess unplug ({ "/bin/sh", "-c", "ip link set leasepeer down && " + NetworkNamespace::waitForLinkState ("lease", "LOWERLAYERDOWN") }, {});
        if (unplug.waitForExit (20000) == 0)
            annotation = LocalIp().getChoiceAnnotation ("10.30.0.1");
    });
    EXPECT_EQ (annotation, "<disconnected> <dhcp> (lease)");
}

TEST (HostIdentifierNamespaceTest, LocalIpsOfTheNamespace)
{
    bool wired = false, unpluggedConnected = true, unplugged = false, outside = true;
    TOV_RUN_IN_NETWORK_NAMESPACE ([&]
    {
        wired = HostIdentifier::isLocalIPAddress ("10.20.0.1", true);
        unplugged = HostIdentifier::isLocalIPAddress ("10.40.0.9", false);
        unpluggedConnected = HostIdentifier::isLocalIPAddress ("10.40.0.9", true);
        outside = HostIdentifier::isLocalIPAddress ("10.50.0.1", false);
    });
    EXPECT_TRUE (wired);
    EXPECT_TRUE (unplugged);
    EXPECT_FALSE (unpluggedConnected);
    EXPECT_FALSE (outside);
}

TEST (HostIdentifierNamespaceTest, AnIpOnADhcpAdapterIsKeptWithTheWarning)
{
    Warned result;
    TOV_RUN_IN_NETWORK_NAMESPACE ([&] { result = getLocalIp ("10.30.0.1"); });
    EXPECT_EQ (result.answer, "10.30.0.1");
    ASSERT_EQ (result.warnings.size(), 1u);
    EXPECT_EQ (result.warnings[0], "Local ip: 10.30.0.1 forced on network adapter with DHCP activated. Disable DHCP or use \"any\" Ip (0.0.0.0) instead");
}

TEST (HostIdentifierNamespaceTest, AnIpOnADisconnectedAdapterIsKeptWithTheWarning)
{
    Warned result;
    TOV_RUN_IN_NETWORK_NAMESPACE ([&] { result = getLocalIp ("10.40.0.1"); });
    EXPECT_EQ (result.answer, "10.40.0.1");
    ASSERT_EQ (result.warnings.size(), 1u);
    EXPECT_EQ (result.warnings[0], "Local ip: 10.40.0.1 is disconnected. Check your cable or network adapter status");
}

TEST (HostIdentifierNamespaceTest, AConnectedStaticIpIsKeptSilently)
{
    Warned result;
    TOV_RUN_IN_NETWORK_NAMESPACE ([&] { result = getLocalIp ("10.20.0.1"); });
    EXPECT_EQ (result.answer, "10.20.0.1");
    EXPECT_TRUE (result.warnings.empty());
}

TEST (HostIdentifierNamespaceTest, AnIpOfAnotherMachineFallsBackToAny)
{
    Warned result;
    TOV_RUN_IN_NETWORK_NAMESPACE ([&] { result = getLocalIp ("10.50.0.1"); });
    EXPECT_EQ (result.answer, "0.0.0.0");
    ASSERT_EQ (result.warnings.size(), 1u);
    EXPECT_EQ (result.warnings[0], "Bad local ip: 10.50.0.1 Fallback to \"any (0.0.0.0)\" adapters.");
}
