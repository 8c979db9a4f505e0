#include "RegisteredService.h"
#include "Program.h"

namespace tov
{

bool RegisteredService::serviceStarted()
{
    Program::get().registerService (*this);
    return Service::serviceStarted();
}

void RegisteredService::serviceStopped()
{
    Service::serviceStopped();
    Program::get().unregisterService();
}

} // namespace tov
