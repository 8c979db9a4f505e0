#include "ExecutionContext.h"

namespace tov
{

TOV_BEGIN_CLASS (ExecutionContext)
TOV_END_CLASS()

TOV_BEGIN_CLASS (ToStringExecutionContext)
TOV_END_CLASS()

ExecutionContext::~ExecutionContext()
{
    deleteAllViews();
}

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

void ExecutionContext::status (bool success, const juce::String& message)
{
    if (! success)
        error (message, nullptr);
    else if (message.isNotEmpty())
        warning (message, nullptr);
}

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

// The size is read afresh on every step, so a callback may add a view.
template <class Callback>
void ExecutionContext::forEachView (Callback&& callback)
{
    for (size_t i = 0; views != nullptr && i < views->size(); ++i)
        callback (*(*views)[i]);
}

void ExecutionContext::sendEntered (const juce::String& name)   { forEachView ([&] (ExecutionContextView& v) { v.enteredCallback (name); }); }
void ExecutionContext::sendLeaved()                             { forEachView ([&] (ExecutionContextView& v) { v.leavedCallback(); }); }
void ExecutionContext::sendAsked (const juce::String& question, const juce::String& answer, bool canceled)
{
    forEachView ([&] (ExecutionContextView& v) { v.askedCallback (question, answer, canceled); });
}
void ExecutionContext::sendWarning (const juce::String& message, const Object* subject)     { forEachView ([&] (ExecutionContextView& v) { v.warningCallback (message, subject); }); }
void ExecutionContext::sendError (const juce::String& message, const Object* subject)       { forEachView ([&] (ExecutionContextView& v) { v.errorCallback (message, subject); }); }
void ExecutionContext::sendInformation (const juce::String& message, const Object* subject) { forEachView ([&] (ExecutionContextView& v) { v.informationCallback (message, subject); }); }

ExecutionContext& ExecutionContext::get()
{
    // Until a program runs, reports go to one silent context shared by all threads.
    static ExecutionContext processContext;
    return processContext;
}

//==============================================================================
void ToStringExecutionContext::write (const juce::String& prefix, const juce::String& message)
{
    if (target != nullptr)
        *target << (prefix.isEmpty() ? juce::String (">") : prefix + ": ") << message << "\n";
}

void ToStringExecutionContext::warning (const juce::String& message, const Object* subject)
{
    write ("Warning", message);
    ExecutionContext::warning (message, subject);
}

void ToStringExecutionContext::error (const juce::String& message, const Object* subject)
{
    write ("Error", message);
    ExecutionContext::error (message, subject);
}

void ToStringExecutionContext::information (const juce::String& message, const Object* subject)
{
    write ({}, message);
    ExecutionContext::information (message, subject);
}

} // namespace tov
