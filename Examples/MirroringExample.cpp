// A document mirrored from one process to another over loopback.
//
//   MirroringExample editor PORT [EDITS [FILE]]
//                                          owns the space "Scene" and listens on 127.0.0.1:PORT;
//                                          once a viewer has asked for a mirror, it makes EDITS
//                                          edits (60 by default) at 50 a second: numbers,
//                                          strings, clips created, moved between lists and
//                                          deleted. Then it tells the viewer, and stops when the
//                                          viewer has answered.
//   MirroringExample viewer PORT [FILE]    connects, asks for a mirror of "Scene", prints what it
//                                          sees as it changes, and when the editor is done
//                                          compares its copy with the editor's.
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
#include <Tov/Network/InterprocessConnectionServer.h>
#include <Tov/Standard/DebugOutputExecutionContextView.h>
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/Program.h>
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
/** A service on the main thread with one scene peer, driven pass by pass. */
class SceneService : public RegisteredService
{
public:
    explicit SceneService (const juce::String& name) : RegisteredService (name), peer (name)
    {
        getExecutionContext().addView (new DebugOutputExecutionContextView());
    }

    void getPeers (std::vector<Peer*>& result) override     { result.push_back (&peer); }

    ScenePeer peer;
};

/** Hands every block that arrives to the program, which queues its envelop on the peer. */
class ForwardingListener : public InterprocessConnectionListener
{
public:
    void messagesReceived (InterprocessConnection& connection, const juce::MemoryBlock& block) override
    {
        Program::get().processReceivedNetworkMessage (connection, block);
    }
};

class ForwardingServer : public InterprocessConnectionServer
{
public:
    explicit ForwardingServer (int p) : port (p) {}
    ~ForwardingServer() override                            { ExecutionContext context; stopServer (context); }

protected:
    void setServerStatus (const SuccessStatus&) override     {}
    juce::String getServerLocalIp() const override          { return HostIdentifier::localhost; }
    int getServerLocalPort() const override                 { return port; }
    InterprocessConnection* createConnection() override     { return new InterprocessConnection(); }
    void processReceivedMessage (InterprocessConnection& connection, const juce::MemoryBlock& block, bool) override
    {
        Program::get().processReceivedNetworkMessage (connection, block);
    }

private:
    int port;
};

/** Runs passes of the service, and of the server when there is one, until the condition holds;
    false at the time-out. */
template <class Condition>
bool runUntil (SceneService& service, ForwardingServer* server, Condition&& condition, double timeOutSeconds)
{
    const auto end = juce::Time::getMillisecondCounterHiRes() + timeOutSeconds * 1000.0;
    while (! condition())
    {
        if (juce::Time::getMillisecondCounterHiRes() > end)
            return false;
        if (server != nullptr)
            server->updateServer();
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

int runEditor (int port, int numEdits, const juce::String& file)
{
    SceneService service ("editor");
    if (! service.startService (true))
        return 1;
    auto* scene = static_cast<Scene*> (Scene::staticClass.createObject());
    scene->title.set ("Opening", false);
    scene->tempo.set (100.0, false);
    service.peer.scene.setRootObject (scene, true);

    ForwardingServer server (port);
    if (! server.startServer (service.getExecutionContext()))
    {
        std::cout << "editor: could not listen on port " << port << std::endl;
        return 1;
    }
    std::cout << "editor: listening on 127.0.0.1:" << port << std::endl;

    auto& space = service.peer.scene;
    if (! runUntil (service, &server, [&] { return space.getMirrorer() != nullptr; }, 30.0))
        return 3;
    std::cout << "editor: a viewer asked for a mirror; editing" << std::endl;

    Editor editor (*scene);
    for (int i = 0; i < numEdits; ++i)
    {
        editor.edit (i);
        const auto next = juce::Time::getMillisecondCounterHiRes() + 20.0;
        runUntil (service, &server, [next] { return juce::Time::getMillisecondCounterHiRes() >= next; }, 1.0);
    }
    std::cout << "editor: " << numEdits << " edits made" << std::endl;

    // The last diff goes first, on the same connection, so the message cannot overtake it.
    space.updateMirroring (-1.0, 0.05);
    space.pushMessageToMirroringTargets (new EditsDoneMessage());
    const bool answered = runUntil (service, &server, [] { return viewerDone.load(); }, 30.0);
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

int runViewer (int port, const juce::String& file)
{
    SceneService service ("viewer");
    if (! service.startService (true))
        return 1;
    ForwardingListener listener;
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
    const bool done = runUntil (service, nullptr, [&]
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
    runUntil (service, nullptr, [] { return false; }, 0.2);
    connection.disconnect();
    service.stopService (2000);
    return done ? 0 : 3;
}
} // namespace

int main (int argc, char* argv[])
{
    const juce::String role = argc > 1 ? argv[1] : "";
    if (argc < 3 || (role != "editor" && role != "viewer"))
    {
        std::cerr << "usage: MirroringExample editor PORT [EDITS [FILE]] | viewer PORT [FILE]" << std::endl;
        return 2;
    }
    const int port = juce::String (argv[2]).getIntValue();
    juce::ScopedJuceInitialiser_GUI juceInitialiser;
    MirroringExampleProgram program;
    if (! program.startProgram())
        return 1;
    const int result = role == "editor" ? runEditor (port, argc > 3 ? juce::String (argv[3]).getIntValue() : 60, argc > 4 ? argv[4] : "")
                                        : runViewer (port, argc > 3 ? argv[3] : "");
    program.stopProgram();
    return result;
}
