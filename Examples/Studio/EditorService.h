#pragma once

#include "StudioPeer.h"
#include <Tov/Message/Transaction/History.h>
#include <Tov/Network/NetworkBroadcaster.h>
#include <Tov/Standard/ConsoleProcess.h>
#include <Tov/Standard/ProgramConnectionServer.h>
#include <memory>

namespace studio
{

/** Keeps nothing of what it receives: where the editor's transactions go. A real studio
    would have its renderer there. */
class RendererTarget;

/** Owns the scene, edits it in undoable transactions, serves it to a viewer that it starts
    and that finds it by its "Alife" packets, renders a preview and saves the scene. */
class EditorService : public ScriptedService
{
public:
    EditorService (const StudioSettings& settings, int discoveryPort);
    ~EditorService() override;

    void getPeers (std::vector<tov::Peer*>& result) override   { result.push_back (&peer); }
    tov::History* getHistory (const tov::Object&, const tov::ObjectSpace*) const override;

protected:
    int runScript() override;
    void everyPass() override;
    void serviceStopped() override;

private:
    StudioSettings settings;
    int discoveryPort;
    StudioPeer peer { "editor" };
    std::unique_ptr<RendererTarget> renderer;
    tov::History history;
    tov::ProgramConnectionServer server { "127.0.0.1", 0 };
    tov::NetworkBroadcaster broadcaster;
    StudioAnnouncement announcement;
    std::unique_ptr<tov::ConsoleProcess> viewer;
    juce::String viewerOutput;

    Scene& createScene();
    void editAndUndo (Scene& scene);
    bool serveTheViewer();
    bool renderPreview (const Scene& scene);
    bool saveAndReload (const Scene& scene);
    bool compareWithTheViewer();
    /** Prints the viewer's complete lines as they come. */
    void relayViewerOutput (int timeOutMilliseconds);
};

} // namespace studio
