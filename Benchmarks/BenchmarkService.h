#pragma once

#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/Service.h>

namespace tov::benchmarks
{

/** A service with no peers and a silent context of its own, registered with the running
    program for its thread, as an application's service is. Started on the caller's thread
    when made, stopped when it goes. */
class BenchmarkService : public Service
{
public:
    explicit BenchmarkService (const juce::String& name = "Benchmark") : Service (name)
    {
        startService (true);
    }

    ~BenchmarkService() override
    {
        stopService (0);
    }

    void getPeers (std::vector<Peer*>&) override        {}
    ExecutionContext& getExecutionContext() override    { return context; }

protected:
    bool serviceStarted() override
    {
        Program::get().registerService (*this);
        return Service::serviceStarted();
    }

    void serviceStopped() override
    {
        Service::serviceStopped();
        Program::get().unregisterService();
    }

private:
    ExecutionContext context;
};

} // namespace tov::benchmarks
