#include "AsyncTrigger.h"
#include "AsyncTriggerManager.h"
#include "../Core/ProtectAgainstDeletion.h"
#include "../Standard/ExecutionContext.h"
#include "../Standard/Program.h"
#include "../Standard/Service.h"
#include <optional>

namespace tov
{

TOV_BEGIN_CLASS (AsyncTrigger)
TOV_END_CLASS()

const char* const AsyncTrigger::supportContact = "support@kelvotech.com";

static AsyncTriggerManager* getCurrentManager()
{
    auto* service = Service::getCurrentService();
    return service != nullptr ? &service->getAsyncTriggerManager() : nullptr;
}

AsyncTrigger::~AsyncTrigger()
{
    if (Program::isStillRunning())
        if (auto* manager = getCurrentManager())
            manager->removeTrigger (this);
}

bool AsyncTrigger::reportIfDeleted (const char* operation) const
{
    if (! hasBeenDeleted (this))
        return false;
    ExecutionContext::get().error (juce::String ("AsyncTrigger::") + operation
                                   + "() called on a deleted object. Please report how this happened to " + supportContact);
    return true;
}

void AsyncTrigger::trig()
{
    if (reportIfDeleted ("trig") || triggered)
        return;
    triggered = true;
    if (auto* manager = getCurrentManager())
        manager->addTrigger (this);
}

void AsyncTrigger::untrig()
{
    if (reportIfDeleted ("untrig") || ! triggered)
        return;
    triggered = false;
    if (auto* manager = getCurrentManager())
        manager->removeTrigger (this);
}

void AsyncTrigger::flush (bool notify)
{
    if (! triggered)
        return;
    triggered = false;
    if (! notify)
        return;

    // A callback may release the owner of this trigger: it then goes when the callback is over.
    std::optional<ProtectAgainstDeletion> protection;
    if (hasParent())
        protection.emplace (*this);
    changed();
}

} // namespace tov
