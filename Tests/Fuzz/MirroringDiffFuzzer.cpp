// libFuzzer target for the diffs that mirror a space, which arrive from the network.
//
// Each input is the text of a State read as a DiffObjectSpaceMessage, then applied to the space
// "Document" of a peer, which holds a small document of nested lists, pointers and links. A diff
// may name anything: unknown classes, addresses nowhere, objects that contain themselves, the
// root. It must be reported or dropped, never crash or leak. After each input the space gets
// its document back.
#include <Tov/Atomic/Atomic.h>
#include <Tov/Container/OwnedVector.h>
#include <Tov/Core/Library.h>
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Message/Mirroring/DiffObjectSpaceMessage.h>
#include <Tov/Message/Peer.h>
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>
#include <Tov/Pointer/OwnedPointer.h>
#include <Tov/Pointer/WeakPointer.h>
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/RegisteredService.h>
#include <juce_events/juce_events.h>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace tov;

namespace
{
class FuzzNode : public Object
{
public:
    TOV_DECLARE_CLASS (FuzzNode, Object)
    String name;
    Integer value;
    OwnedVector<FuzzNode> children;
    OwnedPointer<FuzzNode> pinned;
    WeakPointer<FuzzNode> link;
};

class FuzzPeer : public Peer
{
public:
    TOV_DECLARE_CLASS (FuzzPeer, Peer)
    FuzzPeer()                                               { document.setParent (this); }
    ObjectSpace document { "Document" };
};

TOV_BEGIN_CLASS (FuzzNode)
    TOV_VARIABLE (name)
    TOV_VARIABLE (value)
    TOV_VARIABLE (children)
    TOV_VARIABLE (pinned)
    TOV_VARIABLE (link)
TOV_END_CLASS()

TOV_BEGIN_CLASS (FuzzPeer)
    TOV_VARIABLE (document)
TOV_END_CLASS()

class FuzzProgram : public Program
{
public:
    FuzzProgram() : Program ("MirroringDiffFuzzer", "fuzz", 1, 0, 0, {}) {}

protected:
    void addLibraries (Library& root) override
    {
        auto* library = new NamedLibrary ("MirroringDiffFuzzer", {});
        library->addClass<FuzzNode>();
        library->addClass<FuzzPeer>();
        root.addLibrary (library);
    }
};

class FuzzService : public RegisteredService
{
public:
    FuzzService() : RegisteredService ("Fuzz") {}
    void getPeers (std::vector<Peer*>& result) override      { result.push_back (&peer); }
    FuzzPeer peer;
};

FuzzService* service = nullptr;

/** Identifiers 0x10, 0x11... in the order the nodes are made, so that the corpus can name them. */
FuzzNode* makeNode (const juce::String& name, uint64_t& nextIdentifier)
{
    auto* node = static_cast<FuzzNode*> (FuzzNode::staticClass.createObject());
    node->name.set (name, false);
    node->setUniqueIdentifier (UniqueIdentifier (nextIdentifier++));
    return node;
}

/** The root with two children, one of them holding a grandchild, and a pinned node. */
void makeDocument (ObjectSpace& space)
{
    uint64_t nextIdentifier = 0x10;
    auto* root = makeNode ("root", nextIdentifier);
    auto* first = makeNode ("first", nextIdentifier);
    auto* second = makeNode ("second", nextIdentifier);
    first->children.append (makeNode ("grandchild", nextIdentifier), false);
    root->children.append (first, false);
    root->children.append (second, false);
    root->pinned.set (makeNode ("pinned", nextIdentifier), false);
    space.setRootObject (root, true);
    second->link.set (first, false);
}
} // namespace

extern "C" int LLVMFuzzerInitialize (int*, char***)
{
    // Logs go to a scratch home, not the user's.
    const auto home = juce::File::getSpecialLocation (juce::File::tempDirectory).getChildFile ("MirroringDiffFuzzer");
    home.createDirectory();
    ::setenv ("HOME", home.getFullPathName().toRawUTF8(), 1);
    juce::MessageManager::getInstance();
    static FuzzProgram program;
    if (! program.startProgram())
        std::abort();
    service = new FuzzService();
    service->startService (true);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    ExecutionContext context;
    auto state = State::createFromStateStringBuffer (context, data, size, "fuzz");
    if (state == nullptr)
        return 0;

    auto& space = service->peer.document;
    makeDocument (space);
    auto* diff = new DiffObjectSpaceMessage();
    diff->loadFromState (context, state);
    auto* envelop = new Envelop (new Integer (1), diff);
    envelop->setParent (&service->peer);
    Integer sender (1);
    diff->process (context, sender, *service->peer.getIncomingMessageTarget());
    envelop->deleteThis();
    space.deleteRootObject();
    return 0;
}
