#pragma once

#include "ExecutionContext.h"
#include "Service.h"

namespace tov
{

/** A service with a context of its own that registers with the running program from the thread
    it runs on, as an application's service does: getCurrentService and ExecutionContext::get
    find it there, and its block opens and closes in its own context.

    A subclass names its peers; it may start on its own thread or on the caller's.
*/
class RegisteredService : public Service
{
public:
    using Service::Service;

    ExecutionContext& getExecutionContext() override    { return context; }

protected:
    /** Registers, then starts as a service does. */
    bool serviceStarted() override;
    /** Stops as a service does, then unregisters. */
    void serviceStopped() override;

private:
    ExecutionContext context;
};

} // namespace tov
