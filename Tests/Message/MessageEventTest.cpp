#include "MessageTestSupport.h"
#include <Tov/Message/Event.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** Peers "1" and "2" of a service on the test's thread; events hang below peer 1's document. */
class MessageEventTest : public MessageTest
{
protected:
    PeerService service;
    bool serviceRuns = service.startService (true);
    TestPeer& sender = service.addPeer (makeIdentifier (1));
    TestPeer& receiver = service.addPeer (makeIdentifier (2));
    Shape* root = makeRoot();

    Shape* makeRoot()
    {
        auto* shape = create<Shape>();
        sender.getSpaces();
        sender.document.setRootObject (shape, true);
        return shape;
    }

    /** The event's reason for failing, or "sent". */
    static juce::String signal (const Event& event)
    {
        juce::String error;
        return event.signal (&error) ? juce::String ("sent") : error;
    }
};
} // namespace

TEST_F (MessageEventTest, AnEventSendsACloneOfItsMessageEachTimeInThePeersName)
{
    Event event (makeIdentifier (2), new RecordingMessage ("ping"));
    event.setParent (root);
    EXPECT_TRUE (event.isRegisteredEvent());
    EXPECT_EQ (signal (event), "sent");
    EXPECT_TRUE (event.signal());
    service.callServiceUpdate (true);
    EXPECT_EQ (receiver.lines, (std::vector<juce::String> { "ping from 1", "ping from 1" }));
    EXPECT_NE (event.getMessage(), nullptr);
    EXPECT_EQ (event.getReceiverPeerIdentifier()->toString(), "2");
}

TEST_F (MessageEventTest, AnUnregisteredEventHasNothingToDo)
{
    Event event;
    EXPECT_FALSE (event.isRegisteredEvent());
    EXPECT_EQ (signal (event), "sent");
    event.registerEvent (makeIdentifier (2), new RecordingMessage ("ping"));
    event.unregisterEvent();
    EXPECT_FALSE (event.isRegisteredEvent());
    EXPECT_TRUE (event.signal());
}

TEST_F (MessageEventTest, EachMissingPieceHasItsReason)
{
    Event noMessage (makeIdentifier (2), nullptr);
    noMessage.setParent (root);
    EXPECT_EQ (signal (noMessage), "Event message not set");

    Event noTarget (nullptr, new RecordingMessage ("ping"));
    noTarget.setParent (root);
    EXPECT_EQ (signal (noTarget), "Event targetIdentifier not set");

    Event noParent (makeIdentifier (2), new RecordingMessage ("ping"));
    EXPECT_EQ (signal (noParent), "Event parent not set: unable to find context object to resolve peer");

    Integer outside;
    Event noPeer (makeIdentifier (2), new RecordingMessage ("ping"));
    noPeer.setParent (&outside);
    EXPECT_EQ (signal (noPeer), "Event was unable to find identified sender peer");

    Event unknownTarget (makeIdentifier (5), new RecordingMessage ("ping"));
    unknownTarget.setParent (root);
    EXPECT_EQ (signal (unknownTarget), "Event was unable to send message to target 5");
    EXPECT_FALSE (unknownTarget.signal());
}

TEST_F (MessageEventTest, ASenderPeerWithoutIdentifierCannotSend)
{
    auto& anonymous = service.addPeer (nullptr);
    anonymous.getSpaces();
    auto* shape = create<Shape>();
    anonymous.document.setRootObject (shape, true);
    Event event (makeIdentifier (2), new RecordingMessage ("ping"));
    event.setParent (shape);
    EXPECT_EQ (signal (event), "Event was unable to find identified sender peer");
}
