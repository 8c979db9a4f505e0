#include "ExecutionContext.h"
#include "Program.h"
#include "Service.h"
#include "SuccessStatus.h"
#include <algorithm>

namespace tov
{

TOV_BEGIN_CLASS (ExecutionContext)
TOV_END_CLASS()

ExecutionContext::~ExecutionContext()
{
    deleteAllViews();
}

//==============================================================================
// Without a user interface nobody can answer: every question gets a refusal at once.
bool ExecutionContext::askYesNo (const juce::String&, const juce::String&, const juce::String&, bool)
{
    return false;
}

bool ExecutionContext::askYesNoCancel (const juce::String&, bool& canceled, const juce::String&, const juce::String&, const juce::String&)
{
    canceled = true;
    return false;
}

bool ExecutionContext::askForAName (const juce::String&, juce::String&)
{
    return false;
}

int ExecutionContext::askForOption (const juce::String&, const juce::String&, const std::vector<juce::String>&)
{
    return 0;
}

//==============================================================================
void ExecutionContext::status (const SuccessStatus& status)
{
    const auto& message = status.getMessage();
    if (message.isEmpty())
        return;

    switch (status.getState())
    {
        case SuccessStateEnum::success:  information (message, nullptr); break;
        case SuccessStateEnum::warning:  warning (message, nullptr); break;
        case SuccessStateEnum::error:    error (message, nullptr); break;
    }
}

void ExecutionContext::status (bool success, const juce::String& message)
{
    if (! success)
        error (message, nullptr);
    else if (message.isNotEmpty())
        warning (message, nullptr);
}

//==============================================================================
void ExecutionContext::addView (ExecutionContextView* view)
{
    if (views == nullptr)
        views = std::make_unique<std::vector<ExecutionContextView*>>();
    views->push_back (view);
}

void ExecutionContext::deleteView (ExecutionContextView* view)
{
    if (view == nullptr || views == nullptr)
        return;

    auto position = std::find (views->begin(), views->end(), view);
    if (position != views->end())
    {
        views->erase (position);
        delete view;
    }
}

void ExecutionContext::deleteAllViews()
{
    if (views == nullptr)
        return;

    for (auto* view : *views)
        delete view;
    views.reset();
}

// The size is read afresh on every step, so a callback may add a view, which
// then sees the same event.
template <class Callback>
void ExecutionContext::forEachView (Callback&& callback)
{
    for (size_t i = 0; views != nullptr && i < views->size(); ++i)
        callback (*(*views)[i]);
}

void ExecutionContext::sendEntered (const juce::String& name)
{
    forEachView ([&] (ExecutionContextView& view) { view.enteredCallback (name); });
}

void ExecutionContext::sendLeaved()
{
    forEachView ([] (ExecutionContextView& view) { view.leavedCallback(); });
}

void ExecutionContext::sendAsked (const juce::String& question, const juce::String& answer, bool canceled)
{
    forEachView ([&] (ExecutionContextView& view) { view.askedCallback (question, answer, canceled); });
}

void ExecutionContext::sendWarning (const juce::String& message, const Object* subject)
{
    forEachView ([&] (ExecutionContextView& view) { view.warningCallback (message, subject); });
}

void ExecutionContext::sendError (const juce::String& message, const Object* subject)
{
    forEachView ([&] (ExecutionContextView& view) { view.errorCallback (message, subject); });
}

void ExecutionContext::sendInformation (const juce::String& message, const Object* subject)
{
    forEachView ([&] (ExecutionContextView& view) { view.informationCallback (message, subject); });
}

//==============================================================================
// A thread that runs a service reports to that service's own context.
ExecutionContext& ExecutionContext::get()
{
    if (Program::isStillRunning())
    {
        if (auto* service = Service::getCurrentService())
            return service->getExecutionContext();
        return Program::get().getProgramExecutionContext();
    }

    // Before a program exists and after it stopped, reports go nowhere. The
    // context never gets a view, so sharing it between threads is harmless.
    static ExecutionContext silentContext;
    return silentContext;
}

} // namespace tov
