#include "MessageTestSupport.h"
#include "Support/DeletionWatcher.h"
#include <Tov/Standard/Program.h>
#include <condition_variable>
#include <mutex>

using namespace tov;
using namespace tov::test;

namespace
{
/** A service on its own thread with one peer, "1", and a test that posts to it. */
class PeerThreadTest : public MessageTest
{
protected:
    PeerService service { "Peer Thread" };
    TestPeer& peer = service.addPeer (makeIdentifier (1));

    static Envelop* envelopOf (Message* message)    { return new Envelop (makeIdentifier (9), message); }

    bool post (Envelop* envelop)
    {
        Owned<Integer> one (makeIdentifier (1));
        return Program::get().postEnvelopToMessageTarget (*one, envelop, nullptr);
    }

    bool waitForTheThreadToTakeTheQueue()
    {
        return service.waitFor ([this] { return peer.getIncomingMessageTarget()->getThread() != nullptr; });
    }
};
} // namespace

TEST_F (PeerThreadTest, TheServicesThreadRunsWhatOtherThreadsPost)
{
    ASSERT_TRUE (service.startService (false));
    ASSERT_TRUE (waitForTheThreadToTakeTheQueue());
    EXPECT_EQ (peer.getIncomingMessageTarget()->getThread()->getThreadName(), "Peer Thread");
    for (int i = 0; i < 20; ++i)
        ASSERT_TRUE (post (envelopOf (new SequenceMessage (9, i))));
    ASSERT_TRUE (service.waitFor ([this] { return peer.numSequenceMessages.load() == 20; }));
    EXPECT_EQ (peer.numOutOfOrder.load(), 0);
    service.stopService (5000);
}

TEST_F (PeerThreadTest, APostToAServiceThreadThatIsStoppingIsRefusedAndDeleted)
{
    std::mutex lock;
    std::condition_variable changed;
    bool holding = false, released = false;
    service.onUpdated = [&]
    {
        if (peer.getIncomingMessageTarget()->getThread() == nullptr)
            return true;
        std::unique_lock<std::mutex> scoped (lock);
        holding = true;
        changed.notify_all();
        changed.wait_for (scoped, std::chrono::seconds (20), [&] { return released; });
        return true;
    };
    ASSERT_TRUE (service.startService (false));
    {
        std::unique_lock<std::mutex> scoped (lock);
        ASSERT_TRUE (changed.wait_for (scoped, std::chrono::seconds (20), [&] { return holding; }));
    }

    peer.getIncomingMessageTarget()->getThread()->signalThreadShouldExit();
    auto* envelop = envelopOf (new RecordingMessage ("late"));
    DeletionWatcher watcher (*envelop);
    EXPECT_FALSE (post (envelop));
    EXPECT_TRUE (watcher.deleted);
    EXPECT_EQ (peer.getIncomingMessageTarget()->getNumEnvelops(), 0u);

    {
        const std::lock_guard<std::mutex> scoped (lock);
        released = true;
        changed.notify_all();
    }
    service.stopService (5000);
}

TEST_F (PeerThreadTest, AStoppedServicesPeerQueuesAgainUntilItsNextStart)
{
    ASSERT_TRUE (service.startService (false));
    ASSERT_TRUE (waitForTheThreadToTakeTheQueue());
    service.stopService (5000);
    EXPECT_EQ (peer.getIncomingMessageTarget()->getThread(), nullptr);

    EXPECT_TRUE (post (envelopOf (new SequenceMessage (9, 0))));
    EXPECT_EQ (peer.getIncomingMessageTarget()->getNumEnvelops(), 1u);
    ASSERT_TRUE (service.startService (false));
    ASSERT_TRUE (service.waitFor ([this] { return peer.numSequenceMessages.load() == 1; }));
    service.stopService (5000);
}
