// The processes of the mirroring soak test: a source whose document of 10,000 items is edited
// at random, 1,000 edits a second, and mirrors that ask for a copy of it.
//   MirroringSoakApplication source PORT SECONDS NUMMIRRORS
//       listens on 127.0.0.1:PORT and says "listening"; once NUMMIRRORS mirrors asked for a
//       copy, edits for SECONDS. Every 0.5 s it pauses, sends what changed and then a "paused"
//       message to the mirrors, and waits until each has compared its copy; then it says
//       "source: R rounds, D differences, E edits" and "finished", and tells the mirrors.
//   MirroringSoakApplication mirror PORT NAME
//       connects, asks for a copy, and at each pause compares the hash of its copy with the
//       source's, which it asks for by a remote call: "NAME round N equal|different rss KB",
//       the resident memory read from /proc/self/status. It ends when the source finishes.
// Exit codes: 0 done, 1 could not start, 2 usage, 3 time-out.
#include "ApplicationSupport.h"
#include <Tov/Container/OwnedVector.h>
#include <Tov/Core/Library.h>
#include <Tov/Core/Method.h>
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Message/InterprocessConnectionMessageTarget.h>
#include <Tov/Message/Mirroring/MirrorerObjectSpaceView.h>
#include <Tov/Message/RemoteCall/MethodRemoteCall.h>
#include <juce_events/juce_events.h>
#include <fstream>

using namespace tov;

namespace
{
//==============================================================================
class SoakItem : public Object
{
public:
    TOV_DECLARE_CLASS (SoakItem, Object)
    Integer value;
    String label;
    Real level;
};

class SoakGroup : public Object
{
public:
    TOV_DECLARE_CLASS (SoakGroup, Object)
    OwnedVector<SoakItem> items;
};

class SoakDocument : public Object
{
public:
    TOV_DECLARE_CLASS (SoakDocument, Object)
    Integer numEdits;
    OwnedVector<SoakGroup> groups;
};

class SoakPeer : public Peer
{
public:
    TOV_DECLARE_CLASS (SoakPeer, Peer)
    explicit SoakPeer (const juce::String& name = {}) : Peer (name.isEmpty() ? nullptr : applications::makeName (name))  { document.setParent (this); }
    ObjectSpace document { "Document" };
};

/** Answers the hash of the saved text of the object, deep, as a String: the same text gives the
    same hash in every process. */
class TextHashMethod : public Method
{
public:
    TOV_DECLARE_CLASS (TextHashMethod, Method)
    Object* callOnThis (Object& object) const override;
};

/** From the source, after the diff of a round: the mirror compares, then answers ComparedMessage. */
class PausedMessage : public Message
{
public:
    TOV_DECLARE_CLASS (PausedMessage, Message)
    PausedMessage()                                          { round.setParent (this); }
    explicit PausedMessage (int64_t number) : PausedMessage() { round.set (number, false); }
    void process (ExecutionContext& context, const Object& senderIdentifier, MessageTarget& incomingTarget) const override;
    Integer round;
};

class ComparedMessage : public Message
{
public:
    TOV_DECLARE_CLASS (ComparedMessage, Message)
    ComparedMessage()                                        { round.setParent (this); equal.setParent (this); }
    void process (ExecutionContext& context, const Object& senderIdentifier, MessageTarget& incomingTarget) const override;
    Integer round;
    Boolean equal;
};

class FinishedMessage : public Message
{
public:
    TOV_DECLARE_CLASS (FinishedMessage, Message)
    void process (ExecutionContext&, const Object&, MessageTarget&) const override;
};

TOV_BEGIN_CLASS (SoakItem)
    TOV_VARIABLE (value)
    TOV_VARIABLE (label)
    TOV_VARIABLE (level)
TOV_END_CLASS()

TOV_BEGIN_CLASS (SoakGroup)
    TOV_VARIABLE (items)
TOV_END_CLASS()

TOV_BEGIN_CLASS (SoakDocument)
    TOV_VARIABLE (numEdits)
    TOV_VARIABLE (groups)
TOV_END_CLASS()

TOV_BEGIN_CLASS (SoakPeer)
    TOV_VARIABLE (document)
TOV_END_CLASS()

TOV_BEGIN_CLASS (TextHashMethod)
TOV_END_CLASS()

TOV_BEGIN_CLASS (PausedMessage)
    TOV_VARIABLE (round)
TOV_END_CLASS()

TOV_BEGIN_CLASS (ComparedMessage)
    TOV_VARIABLE (round)
    TOV_VARIABLE (equal)
TOV_END_CLASS()

TOV_BEGIN_CLASS (FinishedMessage)
TOV_END_CLASS()

class SoakProgram : public Program
{
public:
    SoakProgram() : Program ("MirroringSoakApplication", "soak", 1, 0, 0, "test") {}

protected:
    void addLibraries (Library& root) override
    {
        auto* library = new NamedLibrary ("MirroringSoak", {});
        library->addClass<SoakItem>();
        library->addClass<SoakGroup>();
        library->addClass<SoakDocument>();
        library->addClass<SoakPeer>();
        library->addClass<TextHashMethod>();
        library->addClass<PausedMessage>();
        library->addClass<ComparedMessage>();
        library->addClass<FinishedMessage>();
        root.addLibrary (library);
    }
};

juce::String textHashOf (const Object& object)
{
    return juce::String::toHexString (StateObjectExporter::make (object, 0, true)->saveToString().hashCode64());
}

Object* TextHashMethod::callOnThis (Object& object) const
{
    auto* hash = new String();
    hash->set (textHashOf (object), false);
    return hash;
}

/** The resident memory of the process, in kilobytes. */
int64_t residentKilobytes()
{
    std::ifstream status ("/proc/self/status");
    std::string line;
    while (std::getline (status, line))
        if (line.rfind ("VmRSS:", 0) == 0)
            return std::stoll (line.substr (6));
    return -1;
}

//==============================================================================
// What the messages do is told to the process's own loop through these.
std::atomic<int> numCompared { 0 }, numDifferences { 0 };
std::atomic<bool> finished { false };
juce::String mirrorName;
/** In a mirror: the source's peer, through the connection. */
MessageTarget* sourceTarget = nullptr;

/** A service on the main thread, driven pass by pass, with one soak peer. */
class SoakService : public RegisteredService
{
public:
    explicit SoakService (const juce::String& name) : RegisteredService (name), peer (name) {}
    void getPeers (std::vector<Peer*>& result) override     { result.push_back (&peer); }
    SoakPeer peer;
};

SoakService* service = nullptr;

void PausedMessage::process (ExecutionContext& context, const Object& senderIdentifier, MessageTarget& incomingTarget) const
{
    auto* root = service->peer.document.getRootObject();
    bool same = false;
    if (root != nullptr)
    {
        const auto own = textHashOf (*root);
        // Waits in a nested loop of this service: diffs keep being applied meanwhile, and none
        // can come, since the source is paused.
        MethodRemoteCall call (*root, new TextHashMethod());
        auto* sourceHash = dynamic_cast<String*> (call.callPerform (service->peer, *sourceTarget, 20000, nullptr));
        same = sourceHash != nullptr && sourceHash->get() == own;
        if (sourceHash != nullptr)
            sourceHash->deleteThis();
    }
    applications::say (mirrorName + " round " + juce::String (round.get()) + (same ? " equal" : " different") + " rss " + juce::String (residentKilobytes()));

    auto* answer = new ComparedMessage();
    answer->round.set (round.get(), false);
    answer->equal.set (same, false);
    Program::get().postEnvelopToMessageTarget (senderIdentifier, incomingTarget.createEnvelopAsSender (answer, nullptr), nullptr);
    if (! same)
        context.error ("round " + juce::String (round.get()) + " differs");
}

void ComparedMessage::process (ExecutionContext&, const Object&, MessageTarget&) const
{
    if (! equal.get())
        ++numDifferences;
    ++numCompared;
}

void FinishedMessage::process (ExecutionContext&, const Object&, MessageTarget&) const
{
    finished = true;
}

//==============================================================================
/** Runs passes of the service (and of the server, when given) until the condition holds; false
    at the time-out. */
template <class Condition>
bool runUntil (applications::ForwardingServer* server, Condition&& condition, double timeOutSeconds)
{
    const auto end = juce::Time::getMillisecondCounterHiRes() + timeOutSeconds * 1000.0;
    while (! condition())
    {
        if (juce::Time::getMillisecondCounterHiRes() > end)
            return false;
        if (server != nullptr)
            server->updateServer();
        service->callServiceUpdate (true);
        juce::Thread::sleep (1);
    }
    return true;
}

/** Random edits of the document, which keeps about as many items as it started with. */
class RandomEditor
{
public:
    explicit RandomEditor (SoakDocument& d) : document (d) {}

    void edit()
    {
        auto& group = *document.groups.get ((size_t) random.nextInt ((int) document.groups.size()));
        const int kind = random.nextInt (40);
        if (group.items.size() == 0 || kind < 3)
            group.items.append (makeItem());
        else if (kind < 6)
            group.items.remove ((size_t) random.nextInt ((int) group.items.size()));
        else if (kind < 10)
            moveItem (group);
        else
            changeItem (*group.items.get ((size_t) random.nextInt ((int) group.items.size())), kind);
        document.numEdits.set (document.numEdits.get() + 1);
    }

    SoakItem* makeItem()
    {
        auto* item = static_cast<SoakItem*> (SoakItem::staticClass.createObject());
        item->value.set (random.nextInt (1000), false);
        item->label.set ("item " + juce::String (random.nextInt (100000)), false);
        item->level.set (random.nextDouble(), false);
        return item;
    }

private:
    SoakDocument& document;
    juce::Random random { 1234 };

    void moveItem (SoakGroup& from)
    {
        auto& to = *document.groups.get ((size_t) random.nextInt ((int) document.groups.size()));
        auto* item = from.items.get ((size_t) random.nextInt ((int) from.items.size()));
        item->incrementReferenceCounter();
        from.items.remove (item);
        to.items.append (item);
        item->decrementReferenceCounter();
    }

    void changeItem (SoakItem& item, int kind)
    {
        if (kind < 26)
            item.value.set (random.nextInt (1000));
        else if (kind < 33)
            item.label.set ("item " + juce::String (random.nextInt (100000)));
        else
            item.level.set (random.nextDouble());
    }
};

SoakDocument* makeDocument (RandomEditor*& editor)
{
    auto* document = static_cast<SoakDocument*> (SoakDocument::staticClass.createObject());
    editor = new RandomEditor (*document);
    for (int g = 0; g < 100; ++g)
    {
        auto* group = static_cast<SoakGroup*> (SoakGroup::staticClass.createObject());
        for (int i = 0; i < 100; ++i)
            group->items.append (editor->makeItem(), false);
        document->groups.append (group, false);
    }
    return document;
}

int runSource (int port, double seconds, int numMirrors)
{
    SoakService source ("source");
    service = &source;
    source.startService (true);
    RandomEditor* editorPointer = nullptr;
    auto* document = makeDocument (editorPointer);
    std::unique_ptr<RandomEditor> editor (editorPointer);
    auto& space = source.peer.document;
    space.setRootObject (document, true);

    applications::ForwardingServer server (port, [] {});
    if (! server.startServer (source.getExecutionContext()))
        return 1;
    applications::say ("listening");
    if (! runUntil (&server, [&] { return space.getMirrorer() != nullptr && (int) space.getMirrorer()->getNumTargets() == numMirrors; }, 60.0))
        return 3;
    applications::say ("source: " + juce::String (numMirrors) + " mirrors, " + juce::String ((juce::int64) space.getNumObjects()) + " objects");

    const auto start = juce::Time::getMillisecondCounterHiRes();
    int64_t numEdits = 0, round = 0;
    while (juce::Time::getMillisecondCounterHiRes() - start < seconds * 1000.0)
    {
        const auto roundEnd = juce::Time::getMillisecondCounterHiRes() + 500.0;
        runUntil (&server, [&]
        {
            const auto now = juce::Time::getMillisecondCounterHiRes();
            for (; numEdits < (int64_t) (now - start); ++numEdits)
                editor->edit();
            return now >= roundEnd;
        }, 1.0);

        space.updateMirroring (-1.0, 0.05);
        const int expected = numCompared + numMirrors;
        space.pushMessageToMirroringTargets (new PausedMessage (++round));
        if (! runUntil (&server, [&] { return numCompared >= expected; }, 30.0))
            return 3;
    }
    applications::say ("source: " + juce::String (round) + " rounds, " + juce::String (numDifferences.load()) + " differences, " + juce::String (numEdits) + " edits");
    space.pushMessageToMirroringTargets (new FinishedMessage());
    runUntil (&server, [] { return false; }, 0.5);
    applications::say ("finished");
    server.stopServer (source.getExecutionContext());
    source.stopService (5000);
    return 0;
}

int runMirror (int port, const juce::String& name)
{
    mirrorName = name;
    SoakService mirror (name);
    service = &mirror;
    mirror.startService (true);
    ProgramConnectionListener listener;
    InterprocessConnection connection;
    connection.setListener (&listener);
    connection.connect (HostIdentifier ("127.0.0.1"), NetworkAddress ("127.0.0.1", (unsigned int) port), 1000);
    if (! connection.waitUntilIsConnected (30000))
        return 1;
    String sourceName;
    sourceName.set ("source", false);
    sourceTarget = &InterprocessConnectionMessageTarget::getOrCreateThrough (connection, sourceName);
    mirror.peer.asyncRequestMirroringFrom (*sourceTarget);
    const bool done = runUntil (nullptr, [] { return finished.load(); }, 600.0);
    connection.disconnect();
    mirror.stopService (5000);
    return done ? 0 : 3;
}
} // namespace

int main (int argc, char* argv[])
{
    const juce::String role = argc > 1 ? argv[1] : "";
    if (! ((role == "source" && argc == 5) || (role == "mirror" && argc == 4)))
        return 2;
    juce::ScopedJuceInitialiser_GUI juceInitialiser;
    SoakProgram program;
    if (! program.startProgram())
        return 1;
    const int port = juce::String (argv[2]).getIntValue();
    const int result = role == "source" ? runSource (port, juce::String (argv[3]).getDoubleValue(), juce::String (argv[4]).getIntValue())
                                        : runMirror (port, argv[3]);
    program.stopProgram();
    return result;
}
