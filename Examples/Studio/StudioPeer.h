#pragma once

#include "StudioDocument.h"
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Message/Message.h>
#include <Tov/Message/Peer.h>
#include <Tov/Standard/RegisteredService.h>
#include <atomic>
#include <functional>

namespace studio
{

/** A peer whose one space is the scene, named by its text identifier ("editor", "viewer"). */
class StudioPeer : public tov::Peer
{
public:
    TOV_DECLARE_CLASS (StudioPeer, Peer)

    explicit StudioPeer (const juce::String& name = {});

    tov::ObjectSpace scene { "Scene" };
    Scene* getScene() const                     { return dynamic_cast<Scene*> (scene.getRootObject()); }
    /** The scene's saved text, deep, with identifiers: equal texts are equal scenes. */
    juce::String getSceneText() const;
};

/** From the viewer once it has seen everything: the hash of its copy's text. */
class ViewerDoneMessage : public tov::Message
{
public:
    TOV_DECLARE_CLASS (ViewerDoneMessage, Message)

    tov::String sceneTextHash;
    void process (tov::ExecutionContext&, const tov::Object& sender, tov::MessageTarget& target) const override;

    /** What the last such message said, on the thread of the service that received it. */
    static juce::String lastHashReceived;
};

/** A service on its own thread whose pass runs the script of its role once, in steps that
    wait for what they need by running further passes (which do no script). */
class ScriptedService : public tov::RegisteredService
{
public:
    using RegisteredService::RegisteredService;

    /** Prints a line of the session, from the service's thread. */
    static void say (const juce::String& line);
    /** What the script answered, once it has run: the program's exit code. */
    static std::atomic<int> scriptResult;

protected:
    /** The role's whole script; the program quits when it returns, with its result as scriptResult. */
    virtual int runScript() = 0;
    /** Work of every pass, script or not (a server to update, a child to listen to). */
    virtual void everyPass()                    {}

    /** Runs passes until the condition holds; false at the time-out, said with what was awaited. */
    bool passUntil (const juce::String& what, const std::function<bool()>& condition, double timeOutSeconds = 30.0);

    bool serviceUpdated() override;

private:
    bool scriptStarted = false;
};

void addStudioPeerClasses (tov::NamedLibrary& library);

} // namespace studio
