#include "MessageTestSupport.h"
#include <Tov/Standard/Program.h>
#include <array>
#include <chrono>

using namespace tov;
using namespace tov::test;

namespace
{
constexpr int numServices = 4;

/** Four services on their own threads, each with one peer (identifiers 1 to 4), posting one
    sequence message per pass to a random peer, itself included. */
class PeerStressTest : public MessageTest
{
protected:
    std::array<std::unique_ptr<PeerService>, numServices> services;
    std::array<TestPeer*, numServices> peers {};
    /** sent[from][to], each written by the sender's thread alone and read once posting stopped. */
    std::array<std::array<std::atomic<int64_t>, numServices>, numServices> sent {};
    std::atomic<bool> posting { true };

    void SetUp() override
    {
        for (int i = 0; i < numServices; ++i)
        {
            services[i] = std::make_unique<PeerService> ("Peer Stress " + juce::String (i + 1));
            peers[i] = &services[i]->addPeer (makeIdentifier (i + 1));
            services[i]->onUpdated = [this, i] { postOnce (i); return true; };
        }
    }

    void TearDown() override
    {
        for (auto& service : services)
            service->stopService (20000);
    }

    void postOnce (int from)
    {
        if (! posting.load())
            return;
        const int to = (int) services[from]->getRandomGenerator().sampleInt (numServices);
        auto* envelop = new Envelop (makeIdentifier (from + 1), new SequenceMessage (from + 1, sent[from][to].load()));
        Owned<Integer> target (makeIdentifier (to + 1));
        if (Program::get().postEnvelopToMessageTarget (*target, envelop, nullptr))
            ++sent[from][to];
    }

    int64_t getNumSentTo (int to) const
    {
        int64_t total = 0;
        for (int from = 0; from < numServices; ++from)
            total += sent[from][to].load();
        return total;
    }
};
} // namespace

TEST_F (PeerStressTest, FourServicesPostingToEachOtherForTenSecondsDeliverEveryEnvelopOnceInOrder)
{
    for (auto& service : services)
        ASSERT_TRUE (service->startService (false));

    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds (10);
    ASSERT_TRUE (services[0]->waitFor ([&end] { return std::chrono::steady_clock::now() >= end; }, 20000));
    posting = false;

    // A sender in the middle of a post when posting stopped has finished it two passes later.
    for (auto& service : services)
    {
        const int passes = service->numUpdates.load();
        ASSERT_TRUE (service->waitFor ([&] { return service->numUpdates.load() >= passes + 2; }));
    }

    for (int to = 0; to < numServices; ++to)
    {
        auto& peer = *peers[to];
        // The posting flag is seen by each sender at its next pass: wait for what is on the way.
        ASSERT_TRUE (services[to]->waitFor ([&] { return peer.numSequenceMessages.load() == getNumSentTo (to); }, 30000))
            << "peer " << to + 1 << " got " << peer.numSequenceMessages.load() << " of " << getNumSentTo (to);
        EXPECT_EQ (peer.numOutOfOrder.load(), 0);
        EXPECT_GT (peer.numSequenceMessages.load(), 0);
    }
}
