#include "NetworkTestSupport.h"
#include "Atomic/AtomicTestSupport.h"

using namespace tov;
using namespace tov::test;

namespace
{
void refreshWorkstation (NetworkStats& stats)
{
    stats.refreshFrom ("studio-7", makeWorkstationTable());
}
}

TEST (NetworkStatsTest, AdaptersComeInNameOrderWithoutTheLoopback)
{
    NetworkStats stats;
    refreshWorkstation (stats);
    EXPECT_EQ (stats.hostName.get(), "studio-7");
    ASSERT_EQ (stats.networkAdapters.size(), 3u);
    EXPECT_EQ (stats.networkAdapters[0]->name.get(), "eth0");
    EXPECT_EQ (stats.networkAdapters[1]->name.get(), "eth1");
    EXPECT_EQ (stats.networkAdapters[2]->name.get(), "wlan0");
}

TEST (NetworkStatsTest, AnAdaptersAddressesAreInAddressOrder)
{
    NetworkStats stats;
    refreshWorkstation (stats);
    auto* eth1 = stats.networkAdapters[1];
    ASSERT_EQ (eth1->ipAddresses.size(), 2u);
    EXPECT_EQ (eth1->ipAddresses[0]->get(), "10.0.0.9");
    EXPECT_EQ (eth1->ipAddresses[1]->get(), "10.0.0.10");
    EXPECT_TRUE (eth1->connected.get());
    EXPECT_FALSE (eth1->dhcp.get());
    EXPECT_FALSE (stats.networkAdapters[2]->connected.get());
    EXPECT_TRUE (stats.networkAdapters[2]->dhcp.get());
}

TEST (NetworkStatsTest, TheLastAddressOfAnAdapterDecidesItsFlags)
{
    NetworkStats stats;
    stats.refreshFrom ("host", NetworkInterfaceTable ({ makeEntry ("10.1.0.1", "br0", false, true),
                                                        makeEntry ("10.1.0.2", "br0", true, false) }));
    ASSERT_EQ (stats.networkAdapters.size(), 1u);
    EXPECT_TRUE (stats.networkAdapters[0]->connected.get());
    EXPECT_FALSE (stats.networkAdapters[0]->dhcp.get());
}

TEST (NetworkStatsTest, ARefreshReplacesTheFormerAdapters)
{
    NetworkStats stats;
    refreshWorkstation (stats);
    stats.refreshFrom ("other", NetworkInterfaceTable ({ makeEntry ("10.2.0.1", "eth9", true, false) }));
    EXPECT_EQ (stats.toFriendlyString (true), "Host Name: other\nAdapter: eth9 (10.2.0.1)\n");
}

TEST (NetworkStatsTest, FriendlyStringListsConnectedAdaptersOrAll)
{
    NetworkStats stats;
    refreshWorkstation (stats);
    EXPECT_EQ (stats.toFriendlyString (false),
               "Host Name: studio-7\n"
               "Adapter: eth0 (172.16.0.2)\n"
               "Adapter: eth1 (10.0.0.9, 10.0.0.10)\n");
    EXPECT_EQ (stats.toFriendlyString (true),
               "Host Name: studio-7\n"
               "Adapter: eth0 (172.16.0.2)\n"
               "Adapter: eth1 (10.0.0.9, 10.0.0.10)\n"
               "Adapter: wlan0 (192.168.1.20) <disconnected> <DHCP>\n");
}

TEST (NetworkStatsTest, FindsTheAdapterOfAnIp)
{
    NetworkStats stats;
    refreshWorkstation (stats);
    EXPECT_EQ (stats.findNetworkAdapterFromIp (HostIdentifier ("10.0.0.10")), stats.networkAdapters[1]);
    EXPECT_EQ (stats.findNetworkAdapterFromIp (HostIdentifier ("192.168.1.20")), stats.networkAdapters[2]);
    EXPECT_EQ (stats.findNetworkAdapterFromIp (HostIdentifier ("127.0.0.1")), nullptr);
    EXPECT_EQ (stats.findNetworkAdapterFromIp (HostIdentifier ("")), nullptr);
}

TEST (NetworkStatsTest, MatchesTheHostNameOrAnAdaptersIp)
{
    NetworkStats stats;
    refreshWorkstation (stats);
    EXPECT_TRUE (stats.matchHostIdentifier (HostIdentifier ("studio-7")));
    EXPECT_TRUE (stats.matchHostIdentifier (HostIdentifier ("172.16.0.2")));
    EXPECT_FALSE (stats.matchHostIdentifier (HostIdentifier ("Studio-7")));
    EXPECT_FALSE (stats.matchHostIdentifier (HostIdentifier ("10.0.0.11")));
}

TEST (NetworkStatsTest, GetFindsTheNearestProviderAbove)
{
    ensureNetworkTestLibrary();
    auto settings = createOwned<NetworkSettings>();
    EXPECT_EQ (NetworkStats::get (settings->localIp), &settings->stats);
    EXPECT_EQ (NetworkStats::get (*settings), nullptr);
    LocalIp alone;
    EXPECT_EQ (NetworkStats::get (alone), nullptr);
}

TEST (NetworkStatsTest, SavesAndLoadsAsAValue)
{
    NetworkStats source, target;
    refreshWorkstation (source);
    auto outcome = saveAndLoad (source, target);
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_EQ (target.toFriendlyString (true), source.toFriendlyString (true));
}

TEST (NetworkStatsTest, RefreshFromThisMachineNamesTheComputer)
{
    NetworkStats stats;
    stats.refreshFromLocalSystem();
    EXPECT_EQ (stats.hostName.get(), juce::SystemStats::getComputerName());
    EXPECT_EQ (stats.findNetworkAdapterFromIp (HostIdentifier ("127.0.0.1")), nullptr);
    EXPECT_TRUE (stats.toFriendlyString (true).startsWith ("Host Name: " + juce::SystemStats::getComputerName() + "\n"));
}

//==============================================================================
TEST (NetworkAdapterStatsTest, VariablesAndTheirJsonIdentifier)
{
    NetworkAdapterStats adapter;
    ASSERT_EQ (adapter.getNumVariables(), 4u);
    EXPECT_EQ (adapter.getVariable (3)->getClassName(), "OwnedVector(HostIdentifier)");
    auto attribute = adapter.getVariableSignature ((size_t) 3)->getAttribute ("jsonIdentifier");
    ASSERT_NE (attribute, nullptr);
    EXPECT_EQ (attribute->toString(), "\"addresses\"");
    EXPECT_EQ (NetworkStats().getVariable (1)->getClassName(), "OwnedVector(NetworkAdapterStats)");
}

TEST (NetworkAdapterStatsTest, ToStringNamesTheAdapterItsAddressesAndItsState)
{
    NetworkAdapterStats adapter;
    adapter.name.set ("eth0");
    adapter.connected.set (true);
    EXPECT_EQ (adapter.toString(), "eth0\n");
    adapter.ipAddresses.append (new HostIdentifier ("10.0.0.1"));
    adapter.ipAddresses.append (new HostIdentifier ("10.0.0.2"));
    EXPECT_EQ (adapter.toString(), "eth0 (10.0.0.1, 10.0.0.2)\n");
    adapter.dhcp.set (true);
    EXPECT_EQ (adapter.toString(), "eth0 (10.0.0.1, 10.0.0.2) <DHCP>\n");
    adapter.connected.set (false);
    EXPECT_EQ (adapter.toString(), "eth0 (10.0.0.1, 10.0.0.2) <disconnected> <DHCP>\n");
}
