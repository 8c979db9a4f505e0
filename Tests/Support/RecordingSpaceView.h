#pragma once

#include <Tov/Core/ObjectSpace.h>
#include <functional>
#include <vector>

namespace tov::test
{

/** A member variable by its signature's name, anything else by its class name. */
inline juce::String describeObject (const Object* object)
{
    if (object == nullptr)
        return "null";
    auto* signature = object->getSignature();
    return signature != nullptr ? signature->getName() : object->getClassName();
}

/** Records what a space tells its views as "created Shape", "changed width", "destroyed Shape",
    "preDeleted Shape", each after an optional prefix, into a log that the test owns and that
    must outlive the space, which deletes the view. */
class RecordingSpaceView : public ObjectSpaceView
{
public:
    RecordingSpaceView (ObjectSpace& space, std::vector<juce::String>& log, juce::String prefix = {})
        : ObjectSpaceView (space), log (log), prefix (std::move (prefix)) {}

    void objectCreated (Object* object) override    { record ("created", object); }
    void objectChanged (Object* object) override    { record ("changed", object); }
    void objectDestroyed (Object* object) override  { record ("destroyed", object); }
    void objectPreDeleted (Object* object) override { record ("preDeleted", object); }

    /** Called after each record, with the event's name. */
    std::function<void (const juce::String& event, Object* object)> onEvent;

private:
    std::vector<juce::String>& log;
    juce::String prefix;

    void record (const juce::String& event, Object* object)
    {
        log.push_back (prefix + event + " " + describeObject (object));
        if (onEvent)
            onEvent (event, object);
    }
};

/** Adds a new RecordingSpaceView on the log to the space, which owns it, and returns it. */
inline RecordingSpaceView& addRecordingView (ObjectSpace& space, std::vector<juce::String>& log, juce::String prefix = {})
{
    auto* view = new RecordingSpaceView (space, log, std::move (prefix));
    space.addView (view);
    return *view;
}

} // namespace tov::test
