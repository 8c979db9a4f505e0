#pragma once

namespace tov
{

class NetworkStats;

/** An object that holds the network stats of a machine for the objects below it, so that
    they need not ask the system each time. */
class NetworkStatsProvider
{
public:
    virtual ~NetworkStatsProvider() = default;

    /** The stats that the provider holds; null when it holds none. */
    virtual const NetworkStats* getNetworkStats() const = 0;
};

} // namespace tov
