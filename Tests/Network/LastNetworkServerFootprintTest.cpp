#include "DiscoveryTestSupport.h"
#include "Support/DeletionWatcher.h"
#include "Support/TestValues.h"
#include "Atomic/AtomicTestSupport.h"

using namespace tov;
using namespace tov::test;

namespace
{
class LastNetworkServerFootprintTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ensureNetworkTestLibrary();
    }
};
} // namespace

TEST_F (LastNetworkServerFootprintTest, VariablesAreAddressAliveTimeAndInformation)
{
    LastNetworkServerFootprint footprint;
    ASSERT_EQ (footprint.getNumVariables(), 3u);
    EXPECT_EQ (footprint.getVariable (0), &footprint.address);
    EXPECT_EQ (footprint.getVariable (0)->getClassName(), "NetworkAddress");
    EXPECT_EQ (footprint.getVariable (1), &footprint.aliveTime);
    EXPECT_EQ (footprint.getVariable (1)->getClassName(), "Time");
    EXPECT_EQ (footprint.getVariable (2), &footprint.information);
    EXPECT_EQ (footprint.getVariableByName ("information"), &footprint.information);
}

TEST_F (LastNetworkServerFootprintTest, ANewFootprintHasHeardNothing)
{
    LastNetworkServerFootprint footprint;
    EXPECT_TRUE (footprint.getAddress().isEmpty());
    EXPECT_EQ (footprint.getAliveTime(), juce::Time());
    EXPECT_EQ (footprint.getInformation(), nullptr);
}

TEST_F (LastNetworkServerFootprintTest, SetTakesTheSenderTheObjectAndNow)
{
    auto footprint = createOwned<LastNetworkServerFootprint>();
    auto* announcement = ServerAnnouncement::create ("render-1", 7000, 0x1234);
    const juce::Time before = juce::Time::getCurrentTime();
    footprint->set (NetworkAddress ("10.0.0.7", 9000), announcement);
    const juce::Time after = juce::Time::getCurrentTime();

    EXPECT_EQ (footprint->getAddress().toString(), "10.0.0.7:9000");
    EXPECT_EQ (footprint->getInformation(), announcement);
    EXPECT_EQ (announcement->getParent(), &footprint->information);
    EXPECT_GE (footprint->getAliveTime(), before);
    EXPECT_LE (footprint->getAliveTime(), after);
}

TEST_F (LastNetworkServerFootprintTest, SetNotifiesOnlyWhenAsked)
{
    auto footprint = createOwned<LastNetworkServerFootprint>();
    ChangeCounter counter (*footprint);
    footprint->set (NetworkAddress ("10.0.0.7", 9000), ServerAnnouncement::create ("render-1", 7000, 1), false);
    EXPECT_EQ (counter.count, 0);
    footprint->set (NetworkAddress ("10.0.0.8", 9000), ServerAnnouncement::create ("render-2", 7000, 2));
    EXPECT_GT (counter.count, 0);
}

TEST_F (LastNetworkServerFootprintTest, ANewObjectDeletesTheOldOne)
{
    LastNetworkServerFootprint footprint;
    auto* first = ServerAnnouncement::create ("render-1", 7000, 1);
    footprint.set (NetworkAddress ("10.0.0.7", 9000), first);
    DeletionWatcher watcher (*first);
    footprint.set (NetworkAddress ("10.0.0.7", 9000), ServerAnnouncement::create ("render-1", 7000, 2));
    EXPECT_TRUE (watcher.deleted);
}

TEST_F (LastNetworkServerFootprintTest, SavesAndLoadsWithItsInformation)
{
    LastNetworkServerFootprint source, target;
    source.set (NetworkAddress ("10.0.0.7", 9000), ServerAnnouncement::create ("render-1", 7000, 0x1234));
    ExecutionContext context;
    ASSERT_TRUE (target.loadFromState (context, source.makeState (false)));
    EXPECT_EQ (target.getAddress().toString(), "10.0.0.7:9000");
    EXPECT_EQ (target.getAliveTime().toMilliseconds(), source.getAliveTime().toMilliseconds());
    ASSERT_NE (target.getInformation(), nullptr);
    EXPECT_TRUE (target.getInformation()->equals (*source.getInformation()));
}
