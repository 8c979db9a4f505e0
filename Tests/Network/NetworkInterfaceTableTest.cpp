#include "NetworkTestSupport.h"

using namespace tov;
using namespace tov::test;

TEST (NetworkInterfaceTableTest, FindsAllAddressesOrTheConnectedOnes)
{
    const auto table = makeWorkstationTable();
    juce::Array<juce::IPAddress> all, connected;
    table.findAllAddresses (all, false);
    table.findAllAddresses (connected, true);
    EXPECT_EQ (all.size(), 5);
    EXPECT_EQ (connected.size(), 4);
    EXPECT_FALSE (connected.contains (juce::IPAddress ("192.168.1.20")));
}

TEST (NetworkInterfaceTableTest, AnswersByAddress)
{
    const auto table = makeWorkstationTable();
    EXPECT_EQ (table.getInterfaceFriendlyName (juce::IPAddress ("10.0.0.9")), "eth1");
    EXPECT_EQ (table.getInterfaceFriendlyName (juce::IPAddress ("10.0.0.99")), "");
    EXPECT_TRUE (table.isDHCPInterface (juce::IPAddress ("192.168.1.20")));
    EXPECT_FALSE (table.isDHCPInterface (juce::IPAddress ("10.0.0.9")));
    EXPECT_FALSE (table.isDHCPInterface (juce::IPAddress ("10.0.0.99")));
}

TEST (NetworkInterfaceTableTest, ThisMachineHasItsConnectedLoopback)
{
    const auto table = NetworkInterfaceTable::readFromSystem();
    const auto loopback = juce::IPAddress::local (false);
    EXPECT_EQ (table.getInterfaceFriendlyName (loopback), "lo");
    EXPECT_FALSE (table.isDHCPInterface (loopback));
    juce::Array<juce::IPAddress> connected;
    table.findAllAddresses (connected, true);
    EXPECT_TRUE (connected.contains (loopback));
}
