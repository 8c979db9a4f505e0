#include "ScopedBypassTransaction.h"
#include "../../Standard/Service.h"

namespace tov
{

ScopedBypassTransaction::ScopedBypassTransaction()
    : service (Service::getCurrentService())
{
    if (service == nullptr)
        return;
    wasInsideBypass = service->isInsideBypassTransaction();
    if (! wasInsideBypass)
        service->startBypassTransaction();
}

ScopedBypassTransaction::~ScopedBypassTransaction()
{
    if (service != nullptr && ! wasInsideBypass)
        service->finishBypassTransaction();
}

} // namespace tov
