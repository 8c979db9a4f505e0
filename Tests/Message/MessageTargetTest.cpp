#include "MessageTestSupport.h"
#include "Support/DeletionWatcher.h"

using namespace tov;
using namespace tov::test;

namespace
{
class MessageTargetTest : public MessageTest {};
} // namespace

TEST_F (MessageTargetTest, APostWithoutMessagesSucceedsAndDeletesTheEnvelop)
{
    ThreadAwareEnvelopQueueMessageTarget target (makeIdentifier (1));
    auto* envelop = new Envelop (makeIdentifier (2), nullptr);
    DeletionWatcher watcher (*envelop);
    EXPECT_TRUE (target.postEnvelop (envelop));
    EXPECT_TRUE (watcher.deleted);
    EXPECT_EQ (target.getNumEnvelops(), 0u);
}

TEST_F (MessageTargetTest, APostStampsThePostingTimeAndQueuesThePointer)
{
    ThreadAwareEnvelopQueueMessageTarget target (makeIdentifier (1));
    auto* envelop = new Envelop (makeIdentifier (2), new RecordingMessage ("a"));
    const double before = juce::Time::getMillisecondCounterHiRes();
    EXPECT_TRUE (target.postEnvelop (envelop));
    EXPECT_GE (envelop->getPostingTimeInMs(), before);
    EXPECT_LE (envelop->getPostingTimeInMs(), juce::Time::getMillisecondCounterHiRes());

    std::vector<Envelop*> taken;
    target.takeEnvelops (taken);
    ASSERT_EQ (taken.size(), 1u);
    EXPECT_EQ (taken[0], envelop);
    taken[0]->deleteThis();
}

TEST_F (MessageTargetTest, ASecondStoreWithAnEqualIdentifierSucceedsAndWithAnotherFails)
{
    ThreadAwareEnvelopQueueMessageTarget target;
    Owned<Integer> five (makeIdentifier (5)), six (makeIdentifier (6));
    EXPECT_TRUE (target.storeIdentifier (*five));
    EXPECT_TRUE (target.storeIdentifier (*five));
    EXPECT_FALSE (target.storeIdentifier (*six));
    EXPECT_TRUE (target.hasIdentifierEqualTo (*five));

    ObjectOwnedPointer loaded;
    ASSERT_TRUE (target.loadIdentifier (loaded));
    EXPECT_NE (loaded.get(), five.get());
    EXPECT_TRUE (loaded->equals (*five));
}

TEST_F (MessageTargetTest, LoadingWithoutAnIdentifierLeavesThePointerAlone)
{
    ThreadAwareEnvelopQueueMessageTarget target;
    ObjectOwnedPointer loaded;
    loaded.set (makeIdentifier (3), false);
    EXPECT_FALSE (target.loadIdentifier (loaded));
    EXPECT_EQ (loaded->toString(), "3");
}

TEST_F (MessageTargetTest, AnEnvelopAsSenderCarriesACloneOfTheIdentifierAndTheParent)
{
    ThreadAwareEnvelopQueueMessageTarget target (makeIdentifier (7));
    Integer parent;
    auto* message = new RecordingMessage ("m");
    Owned<Envelop> envelop (target.createEnvelopAsSender (message, &parent));
    ASSERT_NE (envelop, nullptr);
    EXPECT_EQ (envelop->getParent(), &parent);
    EXPECT_EQ (envelop->getSenderIdentifier()->toString(), "7");
    EXPECT_EQ (envelop->getSenderIdentifier()->getParent(), envelop->getVariableByName ("senderIdentifier"));
    ASSERT_EQ (envelop->getNumMessages(), 1u);
    EXPECT_EQ (envelop->getMessage (0), message);
}

TEST_F (MessageTargetTest, AnEnvelopAsSenderWithoutIdentifierIsNullAndDeletesTheMessage)
{
    ThreadAwareEnvelopQueueMessageTarget target;
    auto* message = new RecordingMessage ("m");
    DeletionWatcher watcher (*message);
    EXPECT_EQ (target.createEnvelopAsSender (message, nullptr), nullptr);
    EXPECT_TRUE (watcher.deleted);
    EXPECT_EQ (target.createEnvelopAsSender (nullptr, nullptr), nullptr);
}

TEST_F (MessageTargetTest, AnEnvelopAsSenderMayHaveNoMessage)
{
    ThreadAwareEnvelopQueueMessageTarget target (makeIdentifier (7));
    Owned<Envelop> envelop (target.createEnvelopAsSender (nullptr, nullptr));
    ASSERT_NE (envelop, nullptr);
    EXPECT_EQ (envelop->getNumMessages(), 0u);
    EXPECT_TRUE (envelop->hasSenderIdentifier());
}

TEST_F (MessageTargetTest, ClearingDeletesTheQueuedEnvelopsAndSoDoesTheTargetsEnd)
{
    auto* first = new Envelop (makeIdentifier (2), new RecordingMessage ("a"));
    auto* second = new Envelop (makeIdentifier (2), new RecordingMessage ("b"));
    DeletionWatcher firstWatcher (*first), secondWatcher (*second);
    {
        ThreadAwareEnvelopQueueMessageTarget target (makeIdentifier (1));
        target.postEnvelop (first);
        target.clearEnvelops();
        EXPECT_TRUE (firstWatcher.deleted);
        target.postEnvelop (second);
        EXPECT_FALSE (secondWatcher.deleted);
    }
    EXPECT_TRUE (secondWatcher.deleted);
}
