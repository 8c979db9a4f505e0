#pragma once

#include <juce_core/juce_core.h>

namespace tov
{

class Object;

/** A receiver of an execution context's events.

    Not an Object: views are plain helpers owned by their context. Every
    callback does nothing here, so a view overrides only what it shows.
*/
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

} // namespace tov
