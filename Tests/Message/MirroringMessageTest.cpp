#include "MessageTestSupport.h"
#include <Tov/Core/ObjectExporter.h>
#include <Tov/Core/RecycledBlocks.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Message/Mirroring/MirroringMessage.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** A peer "1" of a service on the test's thread, with a shape as the document's root. */
class MirroringMessageTest : public MessageTest
{
protected:
    PeerService service;
    bool serviceRuns = service.startService (true);
    TestPeer& peer = service.addPeer (makeIdentifier (1));
    Shape* root = makeRoot();

    Shape* makeRoot()
    {
        auto* shape = create<Shape>();
        shape->title.set ("first", false);
        peer.getSpaces();
        peer.document.setRootObject (shape, true);
        return shape;
    }

    /** Runs the message as the peer would on arrival. */
    void deliver (MirroringMessage* message)
    {
        auto* envelop = new Envelop (makeIdentifier (9), message);
        ASSERT_TRUE (peer.getIncomingMessageTarget()->postEnvelop (envelop));
        peer.processIncomingMessages (service.context);
    }
};
} // namespace

TEST_F (MirroringMessageTest, AMessageOfAnObjectHoldsItsShallowStateAndAddress)
{
    MirroringMessage message (*root);
    EXPECT_TRUE (State::equals (message.getState(), StateObjectExporter::make (*root, exportOwnedPointersAsIdentifiers, true)));
    EXPECT_EQ (message.getPointer().getAddress().getObject (&peer), root);
}

TEST_F (MirroringMessageTest, TheStateIsLoadedIntoTheObjectAtTheAddress)
{
    auto* message = new MirroringMessage (*root);
    root->title.set ("second", false);
    deliver (message);
    EXPECT_EQ (root->title.get(), "first");
}

TEST_F (MirroringMessageTest, AnAddressCopiedFromAWeakPointerReachesTheSameObject)
{
    ObjectWeakPointer pointer;
    pointer.setAddressOf (root, false);
    auto state = root->makeState (false, true);
    root->title.set ("second", false);
    deliver (new MirroringMessage (pointer, state));
    EXPECT_EQ (root->title.get(), "first");
}

TEST_F (MirroringMessageTest, AMissingObjectIsCreatedUnderTheRootWithTheStatesIdentifier)
{
    auto* shape = create<Shape>();
    shape->title.set ("made", false);
    shape->callInitializeObject (&peer.document, nullptr, root);
    const auto identifier = shape->getUniqueIdentifier();
    auto* message = new MirroringMessage (*shape);
    shape->deleteThis();
    ASSERT_EQ (peer.document.getObject (identifier), nullptr);

    deliver (message);
    auto* made = dynamic_cast<Shape*> (peer.document.getObject (identifier));
    ASSERT_NE (made, nullptr);
    EXPECT_EQ (made->title.get(), "made");
    EXPECT_EQ (made->getParent(), root);
}

TEST_F (MirroringMessageTest, AMessageWithoutSpaceDoesNothing)
{
    MirroringMessage message;
    Integer sender;
    message.process (service.context, sender, *peer.getIncomingMessageTarget());
    EXPECT_EQ (root->title.get(), "first");
}

TEST_F (MirroringMessageTest, ANewMessageTakesTheBlockOfOneJustDeletedOnTheSameThread)
{
    if (! RecycledBlocks::keepsBlocks)
        GTEST_SKIP() << "nothing is kept under AddressSanitizer";
    auto* first = new MirroringMessage (*root);
    const void* block = first;
    first->deleteThis();

    root->title.set ("second", false);
    auto* second = new MirroringMessage (*root);
    EXPECT_EQ (static_cast<const void*> (second), block);
    EXPECT_EQ (second->getPointer().getAddress().getObject (&peer), root);
    EXPECT_EQ (second->getState()->getVariableStateByName ("title")->getString(), "second");
    second->deleteThis();
}
