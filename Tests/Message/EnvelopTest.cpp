#include "MessageTestSupport.h"
#include "Support/DeletionWatcher.h"
#include <Tov/Core/RecycledBlocks.h>
#include <memory>
#include <thread>

using namespace tov;
using namespace tov::test;

namespace
{
class EnvelopTest : public MessageTest {};
} // namespace

TEST_F (EnvelopTest, ANewEnvelopTakesTheBlockOfOneJustDeletedOnTheSameThread)
{
    if (! RecycledBlocks::keepsBlocks)
        GTEST_SKIP() << "nothing is kept under AddressSanitizer";
    auto* first = new Envelop (makeIdentifier (1), new RecordingMessage ("a"));
    const void* block = first;
    first->deleteThis();

    auto* second = new Envelop (makeIdentifier (2), nullptr);
    EXPECT_EQ (static_cast<const void*> (second), block);
    EXPECT_EQ (second->getNumMessages(), 0u);
    EXPECT_EQ (second->getSenderIdentifier()->toString(), "2");
    EXPECT_EQ (second->getPostingTimeInMs(), 0.0);
    second->deleteThis();
}

TEST_F (EnvelopTest, EnvelopsMadeOnOneThreadAndDeletedOnAnotherAreAllDeletedOnce)
{
    constexpr int numEnvelops = 300;
    std::vector<Envelop*> made;
    std::vector<std::unique_ptr<DeletionWatcher>> watchers;
    for (int i = 0; i < numEnvelops; ++i)
    {
        made.push_back (new Envelop (makeIdentifier (i), new RecordingMessage ("a")));
        watchers.push_back (std::make_unique<DeletionWatcher> (*made.back()->getMessage (0)));
    }

    std::thread deleter ([&made]
    {
        for (auto* envelop : made)
            envelop->deleteThis();
    });
    deleter.join();
    for (auto& watcher : watchers)
        EXPECT_TRUE (watcher->deleted);

    std::vector<Envelop*> remade;
    for (int i = 0; i < numEnvelops; ++i)
        remade.push_back (new Envelop (makeIdentifier (i), nullptr));
    for (int i = 0; i < numEnvelops; ++i)
        EXPECT_EQ (remade[(size_t) i]->getSenderIdentifier()->toString(), juce::String (i));
    for (auto* envelop : remade)
        envelop->deleteThis();
}
