#pragma once

#include "../Core/Object.h"
#include <memory>
#include <vector>

namespace tov
{

class ExecutionContextView;

/** The reporting channel of all code: named blocks, messages and questions.

    A context has no output of its own: it forwards every event to its views,
    in the order they were added. A context without a user interface answers
    every question in the negative and never blocks.
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

    /** false gives an error, also for an empty message; true with a message gives a warning. */
    void status (bool success, const juce::String& message);

    /** Takes ownership of the view. */
    void addView (ExecutionContextView* view);
    void deleteView (ExecutionContextView* view);
    void deleteAllViews();
    size_t getNumViews() const noexcept { return views != nullptr ? views->size() : 0; }

    /** The calling thread's context: its service's, or the program's. */
    static ExecutionContext& get();

protected:
    void sendEntered (const juce::String& name);
    void sendLeaved();
    void sendAsked (const juce::String& question, const juce::String& answer, bool canceled);
    void sendWarning (const juce::String& message, const Object* subject);
    void sendError (const juce::String& message, const Object* subject);
    void sendInformation (const juce::String& message, const Object* subject);

private:
    std::unique_ptr<std::vector<ExecutionContextView*>> views;

    template <class Callback>
    void forEachView (Callback&& callback);
};

/** A receiver of a context's events; every callback does nothing here. */
class ExecutionContextView
{
public:
    virtual ~ExecutionContextView() = default;
    virtual void enteredCallback (const juce::String& name) {}
    virtual void leavedCallback() {}
    virtual void askedCallback (const juce::String& question, const juce::String& answer, bool canceled) {}
    virtual void warningCallback (const juce::String& message, const Object* subject) {}
    virtual void errorCallback (const juce::String& message, const Object* subject) {}
    virtual void informationCallback (const juce::String& message, const Object* subject) {}
};

/** Collects reported messages in a string. */
class ToStringExecutionContext : public ExecutionContext
{
public:
    TOV_DECLARE_CLASS (ToStringExecutionContext, ExecutionContext)

    ToStringExecutionContext() = default;
    explicit ToStringExecutionContext (juce::String& target) : target (&target) {}

    void setTarget (juce::String& newTarget) noexcept { target = &newTarget; }

    void warning (const juce::String& message, const Object* subject = nullptr) override;
    void error (const juce::String& message, const Object* subject = nullptr) override;
    void information (const juce::String& message, const Object* subject = nullptr) override;

protected:
    void write (const juce::String& prefix, const juce::String& message);

private:
    juce::String* target = nullptr;
};

} // namespace tov
