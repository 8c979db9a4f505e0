#include "NetworkTestSupport.h"

using namespace tov;
using namespace tov::test;

namespace
{
Owned<NetworkSettings> makeWorkstationSettings()
{
    ensureNetworkTestLibrary();
    auto settings = createOwned<NetworkSettings>();
    settings->stats.refreshFrom ("studio-7", makeWorkstationTable());
    return settings;
}
}

TEST (LocalIpTest, ChoicesAreAnyLocalhostThenEveryAddressOfTheProvider)
{
    auto settings = makeWorkstationSettings();
    const std::vector<juce::String> expected { "0.0.0.0", "127.0.0.1", "172.16.0.2", "10.0.0.9", "10.0.0.10", "192.168.1.20" };
    EXPECT_EQ (settings->localIp.getChoices(), expected);
}

TEST (LocalIpTest, WithoutAProviderTheChoicesBeginWithAnyAndLocalhost)
{
    LocalIp ip;
    const auto choices = ip.getChoices();
    ASSERT_GE (choices.size(), 2u);
    EXPECT_EQ (choices[0], "0.0.0.0");
    EXPECT_EQ (choices[1], "127.0.0.1");
    // This machine's loopback is offered once, as localhost.
    EXPECT_EQ (std::count (choices.begin(), choices.end(), juce::String ("127.0.0.1")), 1);
}

TEST (LocalIpTest, IndexInChoicesFollowsTheProvidersAdapters)
{
    auto settings = makeWorkstationSettings();
    settings->localIp.set ("10.0.0.10");
    EXPECT_EQ (settings->localIp.getIndexInChoices(), 4);
    settings->localIp.set ("10.9.9.9");
    EXPECT_EQ (settings->localIp.getIndexInChoices(), -1);
}

TEST (LocalIpTest, AnnotationsOfAnyAndLocalhost)
{
    auto settings = makeWorkstationSettings();
    EXPECT_EQ (settings->localIp.getChoiceAnnotation ("0.0.0.0"), "(Any Interface)");
    EXPECT_EQ (settings->localIp.getChoiceAnnotation ("127.0.0.1"), "(Local Host)");
}

TEST (LocalIpTest, AnnotationNamesTheAdapter)
{
    auto settings = makeWorkstationSettings();
    EXPECT_EQ (settings->localIp.getChoiceAnnotation ("10.0.0.9"), "(eth1)");
    EXPECT_EQ (settings->localIp.getChoiceAnnotation ("10.9.9.9"), "");
}

TEST (LocalIpTest, AnnotationOfADisconnectedDhcpAdapter)
{
    auto settings = makeWorkstationSettings();
    EXPECT_EQ (settings->localIp.getChoiceAnnotation ("192.168.1.20"), "<disconnected> <dhcp> (wlan0)");
}

TEST (LocalIpTest, AnnotationOfAConnectedDhcpAdapterAndOfADisconnectedOne)
{
    ensureNetworkTestLibrary();
    auto settings = createOwned<NetworkSettings>();
    settings->stats.refreshFrom ("host", NetworkInterfaceTable ({ makeEntry ("10.3.0.1", "dhcp0", true, true),
                                                                  makeEntry ("10.4.0.1", "down0", false, false),
                                                                  makeEntry ("10.5.0.1", "", false, true) }));
    EXPECT_EQ (settings->localIp.getChoiceAnnotation ("10.3.0.1"), "<dhcp> (dhcp0)");
    EXPECT_EQ (settings->localIp.getChoiceAnnotation ("10.4.0.1"), "<disconnected> (down0)");
    // An adapter without a name still shows its state.
    EXPECT_EQ (settings->localIp.getChoiceAnnotation ("10.5.0.1"), "<disconnected> <dhcp> ");
}
