#pragma once

#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/Service.h>

namespace tov::benchmarks
{

/** A service with a silent context of its own, registered with the running program for the
    thread it runs on, as an application's service is. */
class RegisteredService : public Service
{
public:
    using Service::Service;

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
