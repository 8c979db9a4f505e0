#include "EditorService.h"
#include "RenderPreviewTask.h"
#include <Tov/Core/State.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>
#include <Tov/Message/Transaction/ScopedTransaction.h>
#include <Tov/Standard/Profiler/ProfilerScope.h>
#include <Tov/Standard/Program.h>

namespace studio
{

class RendererTarget : public tov::MessageTarget
{
public:
    bool handleEnvelop (tov::Envelop* envelop) override
    {
        ++numEnvelops;
        delete envelop;
        return true;
    }

    int numEnvelops = 0;
};

EditorService::EditorService (const StudioSettings& s, int port)
    : ScriptedService ("Editor"), discoveryPort (port), renderer (std::make_unique<RendererTarget>())
{
    s.copyTo (settings);
    history.setParent (&peer);
}

EditorService::~EditorService() = default;

tov::History* EditorService::getHistory (const tov::Object&, const tov::ObjectSpace*) const
{
    return const_cast<tov::History*> (&history);
}

void EditorService::serviceStopped()
{
    if (viewer != nullptr)
        viewer->kill();
    server.stopServer (getExecutionContext());
    broadcaster.stopBroadcasting();
    // Its transactions hold addresses into the scene, which goes with the service.
    history.clear ("End");
    ScriptedService::serviceStopped();
}

int EditorService::runScript()
{
    auto& scene = createScene();
    editAndUndo (scene);
    if (! serveTheViewer())
        return 3;
    if (! renderPreview (scene))
        return 4;
    if (! saveAndReload (scene))
        return 5;
    return compareWithTheViewer() ? 0 : 6;
}

void EditorService::everyPass()
{
    server.updateServer();
    broadcaster.updateBroadcasting (announcement);
    relayViewerOutput (0);
}

//==============================================================================
Scene& EditorService::createScene()
{
    auto* scene = static_cast<Scene*> (Scene::staticClass.createObject());
    scene->title.set (settings.sceneTitle.get(), false);
    auto& background = scene->addLayer ("Background");
    background.tint.set (0.1, 0.1, 0.3, false);
    auto& logo = scene->addLayer ("Logo");
    logo.rotation.set (15.0, false);
    logo.blendMode.set (BlendMode::screen, false);
    auto& titles = scene->addLayer ("Lower third");
    titles.duration.set (4.0, false);
    titles.gain.set (-6.0, false);
    titles.blendMode.set (BlendMode::multiply, false);
    peer.scene.setRootObject (scene, true);

    // From here on every edit is a transaction: performed towards the renderer, kept in the
    // history, whose first entry, which cannot be undone, is the scene as it was made.
    peer.scene.enableTransactions (*renderer, *peer.getIncomingMessageTarget());
    history.setMessageTargets (*renderer, *peer.getIncomingMessageTarget());
    history.clear ("Create the scene");
    say ("editor: created the scene " + scene->describe());
    return *scene;
}

void EditorService::editAndUndo (Scene& scene)
{
    const tov::ProfilerScope scope ("EditAndUndo");
    auto& logo = *scene.findLayer ("Logo");
    auto& titles = *scene.findLayer ("Lower third");
    {
        const tov::ScopedTransaction transaction ("Fade the logo", logo.opacity);
        logo.opacity.set (0.5);
    }
    {
        const tov::ScopedTransaction transaction ("Mask the lower third with the logo", titles.mask);
        titles.mask.set (&logo);
    }
    say ("editor: edited " + scene.describe());
    history.undo();
    history.undo();
    say ("editor: undid both: " + scene.describe());
    history.redo();
    say ("editor: redid \"" + history.getTransactionDescription (history.getPosition()) + "\": " + scene.describe());
}

bool EditorService::serveTheViewer()
{
    if (! server.startServer (getExecutionContext()))
        return false;
    announcement.name.set ("editor", false);
    announcement.version = tov::Program::get().getSoftwareVersion();
    announcement.port.set (server.getBoundPort(), false);
    if (! broadcaster.startBroadcasting (getExecutionContext(), "127.0.0.1", 0, (size_t) discoveryPort, 0.2))
        return false;
    say ("editor: serving the scene on 127.0.0.1:" + juce::String (server.getBoundPort()) + ", announced to port "
         + juce::String (discoveryPort) + "; starting a viewer");

    const auto self = juce::File::getSpecialLocation (juce::File::hostApplicationPath).getFullPathName();
    viewer.reset (tov::ConsoleProcess::create (self, "viewer " + juce::String (discoveryPort), {}));
    if (viewer == nullptr)
        return false;
    if (! passUntil ("the viewer's last word", [] { return ViewerDoneMessage::lastHashReceived.isNotEmpty(); }, 60.0))
        return false;
    int exitCode = 0;
    while (viewer->isRunning (exitCode))
        relayViewerOutput (100);
    relayViewerOutput (0);
    return exitCode == 0;
}

bool EditorService::renderPreview (const Scene& scene)
{
    RenderPreviewTask task (&scene, (int) settings.numPreviewFrames.get());
    double nextReport = 0.25;
    const bool rendered = passUntil ("the preview", [&]
    {
        task.update();
        if (task.getProgression().get() >= nextReport)
        {
            say ("editor: " + task.name.get() + " " + juce::String (juce::roundToInt (task.getProgression().get() * 100.0)) + " %: "
                 + task.getProgressionString().get());
            nextReport += 0.25;
        }
        return task.isTerminated();
    });
    say ("editor: the preview's mean light is " + juce::String (task.getMeanLight(), 2));
    return rendered;
}

bool EditorService::saveAndReload (const Scene& scene)
{
    const tov::ProfilerScope scope ("SaveAndReload");
    auto& context = getExecutionContext();
    const auto file = tov::Program::get().getProgramDataDirectory ("scenes", true).getChildFile (scene.title.get() + ".txt");
    if (! scene.saveToFile (context, file, true))
        return false;
    auto* reloaded = tov::Object::createFromState (context, tov::State::createFromStateFile (context, file));
    const bool same = reloaded != nullptr && reloaded->equals (scene);
    say ("editor: saved the scene to " + file.getFullPathName() + " and loaded it again: "
         + (same ? "the same scene" : "a different scene"));
    if (reloaded != nullptr)
        reloaded->deleteThis();
    return same;
}

bool EditorService::compareWithTheViewer()
{
    const auto hash = juce::String::toHexString ((juce::int64) peer.getSceneText().hashCode64());
    const bool same = hash == ViewerDoneMessage::lastHashReceived;
    say ("editor: the viewer's copy " + juce::String (same ? "is" : "is not") + " the editor's scene (text hash " + hash + "); "
         + juce::String (renderer->numEnvelops) + " envelops of changes went to the renderer, " + juce::String ((int) history.getNumTransactions())
         + " entries in the history");
    return same;
}

void EditorService::relayViewerOutput (int timeOutMilliseconds)
{
    if (viewer == nullptr)
        return;
    char buffer[4096];
    const int numRead = viewer->readOutput (buffer, sizeof (buffer), timeOutMilliseconds);
    if (numRead > 0)
        viewerOutput += juce::String::fromUTF8 (buffer, numRead);
    for (int end = viewerOutput.indexOfChar ('\n'); end >= 0; end = viewerOutput.indexOfChar ('\n'))
    {
        // Its debug output comes on the same pipe: only its own lines are shown. Other threads
        // write that output in pieces (the text, then its end of line), so one of its own lines
        // may come right after such a piece, on the same line.
        const int start = viewerOutput.substring (0, end).indexOf ("viewer: ");
        if (start >= 0)
            say (viewerOutput.substring (start, end));
        viewerOutput = viewerOutput.substring (end + 1);
    }
}

} // namespace studio
