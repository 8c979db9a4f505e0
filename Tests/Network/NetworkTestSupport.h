#pragma once

#include "Support/TestValues.h"
#include <Tov/Network/LocalIp.h>
#include <Tov/Network/NetworkInterfaceTable.h>
#include <Tov/Network/NetworkStats.h>
#include <Tov/Network/NetworkStatsProvider.h>
#include <gtest/gtest.h>
#include <functional>

namespace tov::test
{

/** Settings that hold the machine's network stats for the local ip below them. */
class NetworkSettings : public Object, public NetworkStatsProvider
{
public:
    TOV_DECLARE_CLASS (NetworkSettings, Object)

    NetworkStats stats;
    LocalIp localIp;

    const NetworkStats* getNetworkStats() const override  { return &stats; }
};

/** Adds the "NetworkTests" library with NetworkSettings and ServerAnnouncement, once. */
void ensureNetworkTestLibrary();

/** An entry of an adapter table, as the system would give it. */
NetworkInterfaceTable::Entry makeEntry (const juce::String& address, const juce::String& adapterName, bool connected, bool dhcp);

/** Adapters "eth1" (10.0.0.10 and 10.0.0.9, connected), "wlan0" (192.168.1.20, DHCP and
    disconnected), "eth0" (172.16.0.2, connected) and the loopback "lo". */
NetworkInterfaceTable makeWorkstationTable();

/** Runs code on a thread of its own inside a new, empty network namespace, after shell
    commands (ip link ..., ip addr ...) have built its adapters. Only that thread and the
    processes it starts see the namespace; it goes away with the thread. */
class NetworkNamespace
{
public:
    /** False, with the reason, when the namespace or its adapters cannot be made here. */
    static bool run (const juce::StringArray& setupCommands, const std::function<void()>& body, juce::String& failure);

    /** A shell command that waits, at most 10 seconds, until the kernel reports the adapter's
        operational state (UP, LOWERLAYERDOWN...), which it updates after the carrier changes. */
    static juce::String waitForLinkState (const juce::String& adapter, const juce::String& state);
};

} // namespace tov::test
