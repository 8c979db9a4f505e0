#pragma once

#include "../Core/Object.h"
#include "ExecutionContextView.h"
#include "SuccessStatus.h"
#include <memory>
#include <vector>

namespace tov
{

/** The reporting channel of all code: named blocks, messages and questions.

    A context has no output of its own: it forwards every event to its views,
    in the order they were added. A context without a user interface answers
    every question in the negative and never blocks; an interactive one is an
    application's subclass that calls sendAsked once it has its answer.

    A context has no lock: a service's context belongs to the service's
    thread, and the program's is shared by the threads without a service.
*/
class ExecutionContext : public Object
{
public:
    TOV_DECLARE_CLASS (ExecutionContext, Object)

    ExecutionContext() = default;
    ~ExecutionContext() override;

    virtual void enter (const juce::String& name)                  { sendEntered (name); }
    virtual void leave()                                           { sendLeaved(); }
    virtual bool askYesNo (const juce::String& question, const juce::String& yesText = {},
                           const juce::String& noText = {}, bool defaultAnswer = false);
    virtual bool askYesNoCancel (const juce::String& question, bool& canceled, const juce::String& yesText = {},
                                 const juce::String& noText = {}, const juce::String& cancelText = {});
    virtual bool askForAName (const juce::String& question, juce::String& name);
    virtual int askForOption (const juce::String& title, const juce::String& question, const std::vector<juce::String>& options);
    virtual void warning (const juce::String& message, const Object* subject = nullptr)      { sendWarning (message, subject); }
    virtual void error (const juce::String& message, const Object* subject = nullptr)        { sendError (message, subject); }
    virtual void information (const juce::String& message, const Object* subject = nullptr)  { sendInformation (message, subject); }

    /** Nothing for an empty message; otherwise information, warning or error after the state. */
    void status (const SuccessStatus& status);
    /** false gives an error, also for an empty message; true with a message gives a warning,
        not an information: a success with something to say deserves attention. */
    void status (bool success, const juce::String& message);

    /** Appends the view and takes ownership of it. */
    void addView (ExecutionContextView* view);
    /** Removes and deletes the first entry equal to view; a view not in the list is left alone. */
    void deleteView (ExecutionContextView* view);
    /** Deletes the views in the order of adding, then the list. */
    void deleteAllViews();
    size_t getNumViews() const noexcept { return views != nullptr ? views->size() : 0; }

    /** The calling thread's context: its service's, or else the program's.
        Without a running program it is a silent context shared by everybody. */
    static ExecutionContext& get();

protected:
    // Each walks the views in the order of adding and may be given a new view on the way.
    void sendEntered (const juce::String& name);
    void sendLeaved();
    void sendAsked (const juce::String& question, const juce::String& answer, bool canceled);
    void sendWarning (const juce::String& message, const Object* subject);
    void sendError (const juce::String& message, const Object* subject);
    void sendInformation (const juce::String& message, const Object* subject);

private:
    // Allocated with the first view: most contexts never get one.
    std::unique_ptr<std::vector<ExecutionContextView*>> views;

    template <class Callback>
    void forEachView (Callback&& callback);
};

} // namespace tov

// Every user of contexts may want to collect messages in a string.
#include "ToStringExecutionContext.h"
