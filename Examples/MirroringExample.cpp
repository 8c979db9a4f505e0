// A document mirrored from one process to another over loopback.
//
//   MirroringExample editor PORT [EDITS [FILE]] [--announce DISCOVERYPORT]
//                                          owns the space "Scene" and listens on 127.0.0.1:PORT;
//                                          once a viewer has asked for a mirror, it makes EDITS
//                                          edits (60 by default) at 50 a second: numbers,
//                                          strings, clips created, moved between lists and
//                                          deleted. Then it tells the viewer, and stops when the
//                                          viewer has answered. With --announce, it also tells
//                                          the network five times a second who it is and where
//                                          it listens, in "Alife" packets to DISCOVERYPORT.
//   MirroringExample viewer PORT [FILE]    connects, asks for a mirror of "Scene", prints what it
//                                          sees as it changes, and when the editor is done
//                                          compares its copy with the editor's.
//   MirroringExample viewer --discover DISCOVERYPORT [FILE]
//                                          the same, with the editor found by its packets.
//
// Both print the saved text of their scene at the end, with a hash of that text, and write it to
// FILE when one is given; the texts are equal when the mirror converged. Exit codes: 0 done, 1 could not start, 2 usage, 3 time-out.
#include <Tov/Atomic/Atomic.h>
#include <Tov/Container/OwnedVector.h>
#include <Tov/Core/Library.h>
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Message/InterprocessConnectionMessageTarget.h>
#include <Tov/Message/Message.h>
#include <Tov/Message/MessageTarget.h>
#include <Tov/Message/Mirroring/MirrorerObjectSpaceView.h>
#include <Tov/Message/Peer.h>
#include <Tov/Network/LastNetworkServerFootprint.h>
#include <Tov/Network/NetworkBroadcaster.h>
#include <Tov/Network/NetworkDiscoverer.h>
#include <Tov/Network/NetworkPort.h>
#include <Tov/Standard/DebugOutputExecutionContextView.h>
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/ProgramConnectionServer.h>
#include <Tov/Standard/RegisteredService.h>
#include <juce_events/juce_events.h>
#include <iostream>

using namespace tov;

namespace
{
//==============================================================================
// The document: a scene of clips, some of them put aside. ("Layer" would name, in old
// documents, a base class that loading translates.)
class Clip : public Object
{
public:
    TOV_DECLARE_CLASS (Clip, Object)

    String name;
    Real opacity;
    Integer order;
};

class Scene : public Object
{
public:
    TOV_DECLARE_CLASS (Scene, Object)

    String title;
    Integer frame;
    Real tempo;
    OwnedVector<Clip> clips;
    OwnedVector<Clip> asideClips;
};

/** A peer whose one space is the scene. */
class ScenePeer : public Peer
{
public:
    TOV_DECLARE_CLASS (ScenePeer, Peer)

    explicit ScenePeer (const juce::String& name = {}) : Peer (name.isEmpty() ? nullptr : new String (name))  { scene.setParent (this); }

    ObjectSpace scene { "Scene" };
};

/** What the editor's "Alife" packets carry: who it is, and the port of its server. */
class EditorAnnouncement : public Object
{
public:
    TOV_DECLARE_CLASS (EditorAnnouncement, Object)

    String name;
    SoftwareVersion version;
    NetworkPort port;
};

/** From the editor once its last edit went out: the viewer answers with a ViewerDoneMessage. */
class EditsDoneMessage : public Message
{
public:
    TOV_DECLARE_CLASS (EditsDoneMessage, Message)
    void process (ExecutionContext& context, const Object& senderIdentifier, MessageTarget& incomingTarget) const override;
};

/** From the viewer once it has compared its copy. */
class ViewerDoneMessage : public Message
{
public:
    TOV_DECLARE_CLASS (ViewerDoneMessage, Message)
    void process (ExecutionContext&, const Object&, MessageTarget&) const override;
};

TOV_BEGIN_CLASS (Clip)
    TOV_VARIABLE (name)
    TOV_VARIABLE (opacity)
    TOV_VARIABLE (order)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Scene)
    TOV_VARIABLE (title)
    TOV_VARIABLE (frame)
    TOV_VARIABLE (tempo)
    TOV_VARIABLE (clips)
    TOV_VARIABLE (asideClips)
TOV_END_CLASS()

TOV_BEGIN_CLASS (ScenePeer)
    TOV_VARIABLE (scene)
TOV_END_CLASS()

TOV_BEGIN_CLASS (EditorAnnouncement)
    TOV_VARIABLE (name)
    TOV_VARIABLE (version)
    TOV_VARIABLE (port)
TOV_END_CLASS()

TOV_BEGIN_CLASS (EditsDoneMessage)
TOV_END_CLASS()

TOV_BEGIN_CLASS (ViewerDoneMessage)
TOV_END_CLASS()

std::atomic<bool> editsDone { false }, viewerDone { false };

class MirroringExampleProgram : public Program
{
public:
    MirroringExampleProgram() : Program ("MirroringExample", "main", 1, 0, 0, "example") {}

protected:
    void addLibraries (Library& root) override
    {
        auto* library = new NamedLibrary ("MirroringExample", {});
        library->addClass<Clip>();
        library->addClass<Scene>();
        library->addClass<ScenePeer>();
        library->addClass<EditorAnnouncement>();
        library->addClass<EditsDoneMessage>();
        library->addClass<ViewerDoneMessage>();
        root.addLibrary (library);
    }

    void removeLibraries (Library& root) override      { root.removeLibrary ("MirroringExample"); }
};

/** The saved text of the scene, deep, with identifiers, and a hash of it that means the same in
    every process. */
juce::String sceneText (const ObjectSpace& space)
{
    auto* root = space.getRootObject();
    return root != nullptr ? StateObjectExporter::make (*root, 0, true)->saveToString() : juce::String ("null\n");
}

void printScene (const juce::String& who, const ObjectSpace& space, const juce::String& file)
{
    const auto text = sceneText (space);
    std::cout << who << " text hash " << juce::String::toHexString (text.hashCode64()) << "\n" << text << std::flush;
    if (file.isNotEmpty())
        juce::File (file).replaceWithText (text);
}

void EditsDoneMessage::process (ExecutionContext&, const Object& senderIdentifier, MessageTarget& incomingTarget) const
{
    editsDone = true;
    Program::get().postEnvelopToMessageTarget (senderIdentifier, incomingTarget.createEnvelopAsSender (new ViewerDoneMessage(), nullptr), nullptr);
}

void ViewerDoneMessage::process (ExecutionContext&, const Object&, MessageTarget&) const
{
    viewerDone = true;
}

//==============================================================================
/** A service on the main thread with one scene peer, driven pass by pass, with whatever else
    turns on the main thread (a server, a broadcaster) in alsoEachPass. */
class SceneService : public RegisteredService
{
public:
    explicit SceneService (const juce::String& name) : RegisteredService (name), peer (name)
    {
        getExecutionContext().addView (new DebugOutputExecutionContextView());
    }

    void getPeers (std::vector<Peer*>& result) override     { result.push_back (&peer); }

    ScenePeer peer;
    std::function<void()> alsoEachPass = [] {};
};

/** Runs passes of the service until the condition holds; false at the time-out. */
template <class Condition>
bool runUntil (SceneService& service, Condition&& condition, double timeOutSeconds)
{
    const auto end = juce::Time::getMillisecondCounterHiRes() + timeOutSeconds * 1000.0;
    while (! condition())
    {
        if (juce::Time::getMillisecondCounterHiRes() > end)
            return false;
        service.alsoEachPass();
        service.callServiceUpdate (true);
        juce::Thread::sleep (2);
    }
    return true;
}

//==============================================================================
/** The scripted edits: each one a different kind, in turn. */
class Editor
{
public:
    explicit Editor (Scene& s) : scene (s) {}

    void edit (int index)
    {
        switch (index % 6)
        {
            case 0:  scene.frame.set (scene.frame.get() + 1); break;
            case 1:  addClip(); break;
            case 2:  scene.tempo.set (100.0 + index * 0.5); break;
            case 3:  moveClip (scene.clips, scene.asideClips); break;
            case 4:  renameClip (index); break;
            default: deleteOrMoveBack (index); break;
        }
        if (index % 10 == 9)
            scene.title.set ("Take " + juce::String (index / 10 + 1));
    }

private:
    Scene& scene;
    int numClipsMade = 0;

    void addClip()
    {
        auto* clip = static_cast<Clip*> (Clip::staticClass.createObject());
        clip->name.set ("Clip " + juce::String (++numClipsMade), false);
        clip->opacity.set (1.0, false);
        clip->order.set (numClipsMade, false);
        scene.clips.append (clip);
    }

    static void moveClip (OwnedVector<Clip>& from, OwnedVector<Clip>& to)
    {
        if (from.size() == 0)
            return;
        auto* clip = from.get (0);
        clip->incrementReferenceCounter();
        from.remove ((size_t) 0);
        to.append (clip);
        clip->decrementReferenceCounter();
    }

    void renameClip (int index)
    {
        if (scene.clips.size() == 0)
            return;
        auto* clip = scene.clips.get (scene.clips.size() - 1);
        clip->name.set (clip->name.get() + "'");
        clip->opacity.set (0.5 + (index % 5) * 0.1);
    }

    void deleteOrMoveBack (int index)
    {
        if (index % 4 == 1 && scene.clips.size() > 1)
            scene.clips.remove ((size_t) 0);
        else
            moveClip (scene.asideClips, scene.clips);
    }
};

/** The editor's announcement: the program's name and version, and the port of its server. */
void fillAnnouncement (EditorAnnouncement& announcement, int port)
{
    announcement.name.set ("editor", false);
    announcement.version = Program::get().getSoftwareVersion();
    announcement.port.set (port, false);
}

int runEditor (int port, int numEdits, const juce::String& file, int discoveryPort)
{
    SceneService service ("editor");
    if (! service.startService (true))
        return 1;
    auto* scene = static_cast<Scene*> (Scene::staticClass.createObject());
    scene->title.set ("Opening", false);
    scene->tempo.set (100.0, false);
    service.peer.scene.setRootObject (scene, true);

    ProgramConnectionServer server (HostIdentifier::localhost, port);
    if (! server.startServer (service.getExecutionContext()))
    {
        std::cout << "editor: could not listen on port " << port << std::endl;
        return 1;
    }
    std::cout << "editor: listening on 127.0.0.1:" << port << std::endl;

    // Loopback's broadcast address is its own, so the packets reach a viewer on this machine.
    NetworkBroadcaster broadcaster;
    EditorAnnouncement announcement;
    fillAnnouncement (announcement, port);
    if (discoveryPort > 0)
    {
        if (! broadcaster.startBroadcasting (service.getExecutionContext(), HostIdentifier::localhost, 0, (size_t) discoveryPort, 0.2))
            return 1;
        std::cout << "editor: announcing itself to port " << discoveryPort << std::endl;
    }
    service.alsoEachPass = [&]
    {
        server.updateServer();
        broadcaster.updateBroadcasting (announcement);
    };

    auto& space = service.peer.scene;
    if (! runUntil (service, [&] { return space.getMirrorer() != nullptr; }, 30.0))
        return 3;
    std::cout << "editor: a viewer asked for a mirror; editing" << std::endl;

    Editor editor (*scene);
    for (int i = 0; i < numEdits; ++i)
    {
        editor.edit (i);
        const auto next = juce::Time::getMillisecondCounterHiRes() + 20.0;
        runUntil (service, [next] { return juce::Time::getMillisecondCounterHiRes() >= next; }, 1.0);
    }
    std::cout << "editor: " << numEdits << " edits made" << std::endl;

    // The last diff goes first, on the same connection, so the message cannot overtake it.
    space.updateMirroring (-1.0, 0.05);
    space.pushMessageToMirroringTargets (new EditsDoneMessage());
    const bool answered = runUntil (service, [] { return viewerDone.load(); }, 30.0);
    printScene ("editor:", space, file);
    server.stopServer (service.getExecutionContext());
    service.stopService (2000);
    return answered ? 0 : 3;
}

//==============================================================================
/** One line on what the viewer's copy holds. */
juce::String describe (const ObjectSpace& space)
{
    auto* scene = dynamic_cast<Scene*> (space.getRootObject());
    if (scene == nullptr)
        return "no scene yet";
    juce::StringArray names;
    for (size_t i = 0; i < scene->clips.size(); ++i)
        names.add (scene->clips.get (i)->name.get());
    return "\"" + scene->title.get() + "\" frame " + juce::String (scene->frame.get()) + ", tempo " + juce::String (scene->tempo.get())
         + ", clips [" + names.joinIntoString (", ") + "], " + juce::String ((int) scene->asideClips.size()) + " aside";
}

/** Listens for "Alife" packets on the port until one carries an editor's announcement: the
    editor's server is at the packet's sender ip and the announced port. 0 at the time-out. */
int discoverEditor (SceneService& service, int discoveryPort)
{
    NetworkDiscoverer discoverer;
    if (! discoverer.startDiscovering (service.getExecutionContext(), LocalNetworkAddress (HostIdentifier::localhost, (unsigned int) discoveryPort), true))
        return 0;
    std::cout << "viewer: looking for an editor on port " << discoveryPort << std::endl;
    LastNetworkServerFootprint footprint;
    EditorAnnouncement* found = nullptr;
    runUntil (service, [&]
    {
        while (found == nullptr && discoverer.getNetworkServerFootPrint (service.getExecutionContext(), footprint))
            found = dynamic_cast<EditorAnnouncement*> (footprint.getInformation());
        return found != nullptr;
    }, 30.0);
    if (found == nullptr)
        return 0;
    std::cout << "viewer: found " << found->name.get() << " " << found->version.toString() << " at "
              << footprint.getAddress().getHost() << ", port " << found->port.get() << std::endl;
    return (int) found->port.get();
}

int runViewer (int port, const juce::String& file, int discoveryPort)
{
    SceneService service ("viewer");
    if (! service.startService (true))
        return 1;
    if (discoveryPort > 0 && (port = discoverEditor (service, discoveryPort)) == 0)
        return 3;
    ProgramConnectionListener listener;
    InterprocessConnection connection;
    connection.setListener (&listener);
    connection.connect (HostIdentifier ("127.0.0.1"), NetworkAddress ("127.0.0.1", (unsigned int) port), 1000);
    if (! connection.waitUntilIsConnected (30000))
    {
        std::cout << "viewer: could not connect to port " << port << std::endl;
        return 1;
    }

    String editorName;
    editorName.set ("editor", false);
    auto& space = service.peer.scene;
    service.peer.asyncRequestMirroringFrom (InterprocessConnectionMessageTarget::getOrCreateThrough (connection, editorName));
    std::cout << "viewer: asked for a mirror of \"Scene\"" << std::endl;

    // What it sees, at most five times a second.
    juce::String shown;
    double nextShow = 0.0;
    const bool done = runUntil (service, [&]
    {
        const auto now = juce::Time::getMillisecondCounterHiRes();
        if (now >= nextShow || editsDone)
        {
            const auto seen = describe (space);
            if (seen != shown)
                std::cout << "viewer: " << (shown = seen) << std::endl;
            nextShow = now + 200.0;
        }
        return editsDone.load();
    }, 60.0);
    printScene ("viewer:", space, file);
    // The answer to the editor is on its way once the connection has written it.
    runUntil (service, [] { return false; }, 0.2);
    connection.disconnect();
    service.stopService (2000);
    return done ? 0 : 3;
}
} // namespace

/** Takes "--announce N" or "--discover N" out of the arguments: N, or 0 when absent. */
int takeDiscoveryPort (juce::StringArray& arguments, const juce::String& option)
{
    const int index = arguments.indexOf (option);
    if (index < 0 || index + 1 >= arguments.size())
        return 0;
    const int port = arguments[index + 1].getIntValue();
    arguments.removeRange (index, 2);
    return port;
}

int main (int argc, char* argv[])
{
    juce::StringArray arguments (argv + 1, argc - 1);
    const juce::String role = arguments[0];
    const int announcePort = role == "editor" ? takeDiscoveryPort (arguments, "--announce") : 0;
    const int discoverPort = role == "viewer" ? takeDiscoveryPort (arguments, "--discover") : 0;
    if (discoverPort > 0)
        arguments.insert (1, "0");
    if (arguments.size() < 2 || (role != "editor" && role != "viewer"))
    {
        std::cerr << "usage: MirroringExample editor PORT [EDITS [FILE]] [--announce DISCOVERYPORT]"
                     " | viewer PORT [FILE] | viewer --discover DISCOVERYPORT [FILE]" << std::endl;
        return 2;
    }
    const int port = arguments[1].getIntValue();
    juce::ScopedJuceInitialiser_GUI juceInitialiser;
    MirroringExampleProgram program;
    if (! program.startProgram())
        return 1;
    const int result = role == "editor" ? runEditor (port, arguments.size() > 2 ? arguments[2].getIntValue() : 60, arguments[3], announcePort)
                                        : runViewer (port, arguments[2], discoverPort);
    program.stopProgram();
    return result;
}
