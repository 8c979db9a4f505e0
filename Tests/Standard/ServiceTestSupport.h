#pragma once

#include "Atomic/AtomicTestSupport.h"
#include "Support/LogTestSupport.h"
#include "Support/TestService.h"
#include <Tov/Atomic/AsyncTrigger.h>
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Standard/ExecutionContextView.h>
#include <functional>
#include <vector>

// Helpers of the tests of services.
namespace tov::test
{

/** Writes every event of a context as a line into a list the test owns:
    "enter X", "leave", "error X", "warning X", "information X", and "deleted" when it goes. */
class EventRecordingView : public ExecutionContextView
{
public:
    explicit EventRecordingView (std::vector<juce::String>& events) : events (events) {}
    ~EventRecordingView() override                                             { events.push_back ("deleted"); }

    void enteredCallback (const juce::String& name) override                   { events.push_back ("enter " + name); }
    void leavedCallback() override                                             { events.push_back ("leave"); }
    void errorCallback (const juce::String& message, const Object*) override   { events.push_back ("error " + message); }
    void warningCallback (const juce::String& message, const Object*) override { events.push_back ("warning " + message); }
    void informationCallback (const juce::String& message, const Object*) override { events.push_back ("information " + message); }

private:
    std::vector<juce::String>& events;
};

/** An object that tells a list when it goes. */
class Marker : public Object
{
public:
    TOV_DECLARE_CLASS (Marker, Object)

    ~Marker() override;

    std::vector<juce::String>* events = nullptr;
    juce::String label;
};

/** A test service that holds two object spaces as member variables. */
class SpacesService : public TestService
{
public:
    TOV_DECLARE_CLASS (SpacesService, Service)

    SpacesService() : TestService ("Spaces") {}

    ObjectSpace scene { "scene" };
    ObjectSpace audio { "audio" };
};

/** Makes the classes of these tests known to the library tree; safe to call more than once. */
void ensureServiceTestLibrary();

/** A marker made by its class and set as the root of the space, telling events when it goes. */
Marker& setMarkerRoot (ObjectSpace& space, const juce::String& label, std::vector<juce::String>& events);

} // namespace tov::test
