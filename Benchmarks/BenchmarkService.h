#pragma once

#include <Tov/Standard/RegisteredService.h>

namespace tov::benchmarks
{

/** A registered service with no peers, started on the caller's thread when made, stopped when
    it goes. */
class BenchmarkService : public RegisteredService
{
public:
    explicit BenchmarkService (const juce::String& name = "Benchmark") : RegisteredService (name)
    {
        startService (true);
    }

    ~BenchmarkService() override
    {
        stopService (0);
    }

    void getPeers (std::vector<Peer*>&) override        {}
};

} // namespace tov::benchmarks
