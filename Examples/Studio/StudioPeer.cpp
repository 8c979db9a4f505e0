#include "StudioPeer.h"
#include <Tov/Core/Library.h>
#include <Tov/Core/State.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Standard/Program.h>
#include <juce_events/juce_events.h>
#include <iostream>
#include <mutex>

namespace studio
{

TOV_BEGIN_CLASS (StudioPeer)
    TOV_VARIABLE (scene)
TOV_END_CLASS()

TOV_BEGIN_CLASS (ViewerDoneMessage)
    TOV_VARIABLE (sceneTextHash)
TOV_END_CLASS()

juce::String ViewerDoneMessage::lastHashReceived;
std::atomic<int> ScriptedService::scriptResult { 1 };

namespace
{
tov::String* makeName (const juce::String& name)
{
    auto* identifier = new tov::String();
    identifier->set (name, false);
    return identifier;
}
} // namespace

StudioPeer::StudioPeer (const juce::String& name) : Peer (name.isEmpty() ? nullptr : makeName (name))
{
    scene.setParent (this);
}

juce::String StudioPeer::getSceneText() const
{
    auto* root = scene.getRootObject();
    return root != nullptr ? tov::StateObjectExporter::make (*root, 0, true)->saveToString() : juce::String ("null\n");
}

void ViewerDoneMessage::process (tov::ExecutionContext&, const tov::Object&, tov::MessageTarget&) const
{
    lastHashReceived = sceneTextHash.get();
}

//==============================================================================
void ScriptedService::say (const juce::String& line)
{
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock (mutex);
    std::cout << line << std::endl;
}

bool ScriptedService::serviceUpdated()
{
    everyPass();
    if (! scriptStarted)
    {
        scriptStarted = true;
        scriptResult = runScript();
        juce::JUCEApplicationBase::quit();
    }
    return RegisteredService::serviceUpdated();
}

bool ScriptedService::passUntil (const juce::String& what, const std::function<bool()>& condition, double timeOutSeconds)
{
    const auto end = juce::Time::getMillisecondCounterHiRes() + timeOutSeconds * 1000.0;
    while (! condition())
    {
        if (juce::Time::getMillisecondCounterHiRes() > end)
        {
            say (getFriendlyName() + ": time-out while waiting for " + what);
            return false;
        }
        callServiceUpdate (false);
        tov::Program::letCurrentThreadWaitAccordingToPowerSaveMode (2);
    }
    return true;
}

void addStudioPeerClasses (tov::NamedLibrary& library)
{
    library.addClass<StudioPeer>();
    library.addClass<ViewerDoneMessage>();
}

} // namespace studio
