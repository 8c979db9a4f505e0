// The receiving side of discovery on loopback: packets come from a plain socket on 127.0.0.1,
// or are handed to the packet reader for what no IPv4 socket can carry.
#include "DiscoveryTestSupport.h"
#include "Support/DeletionWatcher.h"
#include "Support/RecordingExecutionContext.h"
#include "Support/TestValues.h"
#include "Support/Waiting.h"
#include <Tov/Core/State.h>

using namespace tov;
using namespace tov::test;
using tov::testing::RecordingExecutionContext;

namespace
{
class NetworkDiscovererTest : public ::testing::Test
{
protected:
    const int port = findFreeUdpPort();
    const juce::String portText { port };
    NetworkDiscoverer discoverer;
    RecordingExecutionContext context;
    LastNetworkServerFootprint footprint;
    DatagramEnd sender;
    Owned<ServerAnnouncement> announcement { ServerAnnouncement::create ("render-1", 7000, 0x1234) };

    void SetUp() override
    {
        ensureNetworkTestLibrary();
    }

    bool start (bool reusePort = true)
    {
        return discoverer.startDiscovering (context, LocalNetworkAddress ("127.0.0.1", (unsigned int) port), reusePort);
    }

    bool poll()
    {
        return discoverer.getNetworkServerFootPrint (context, footprint);
    }

    /** The texts' "configured address <- sender". */
    juce::String socketText() const
    {
        return "127.0.0.1:" + portText + " <- 127.0.0.1:" + juce::String (sender.getPort());
    }

    /** Sends the packet and polls until it has been read, whatever the answer. */
    bool sendAndRead (const juce::MemoryBlock& packet)
    {
        if (! sender.send (packet, port))
            return false;
        const size_t numMessages = context.warnings.size();
        bool found = false;
        waitUntil ([&] { found = poll(); return found || context.warnings.size() > numMessages; });
        return found;
    }
};

juce::MemoryBlock packetOfText (const juce::String& stateText)
{
    ExecutionContext silent;
    juce::MemoryOutputStream packet;
    State::createFromStateString (silent, stateText, "test")->toBinary (packet);
    return packet.getMemoryBlock();
}
} // namespace

TEST_F (NetworkDiscovererTest, StartListensAtThePortAndKeepsTheConfiguredAddress)
{
    EXPECT_FALSE (discoverer.isDiscovering());
    ASSERT_TRUE (start());
    EXPECT_TRUE (discoverer.isDiscovering());
    EXPECT_TRUE (discoverer.isReusingPort());
    EXPECT_EQ (discoverer.getLocalAddress().toString(), "127.0.0.1:" + portText);
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (NetworkDiscovererTest, StartOnAPortTakenWithoutReuseGivesTheErrorAndLeavesDiscoveringAsItWas)
{
    ASSERT_TRUE (start (false));
    NetworkDiscoverer second;
    EXPECT_FALSE (second.startDiscovering (context, LocalNetworkAddress ("127.0.0.1", (unsigned int) port), true));
    EXPECT_FALSE (second.isDiscovering());
    EXPECT_TRUE (second.isReusingPort());
    const juce::String error = "Could not bind port 127.0.0.1:" + portText + " disable the ability to discover remote broadcasters via KelvoNet";
    EXPECT_EQ (context.errors, std::vector<juce::String> { error });

    // A second start of a discoverer that listens already fails too, and it goes on listening.
    EXPECT_FALSE (start (false));
    EXPECT_TRUE (discoverer.isDiscovering());
    EXPECT_EQ (context.errors.size(), 2u);
}

TEST_F (NetworkDiscovererTest, DiscoverersThatReuseThePortShareIt)
{
    ASSERT_TRUE (start (true));
    NetworkDiscoverer second;
    EXPECT_TRUE (second.startDiscovering (context, LocalNetworkAddress ("127.0.0.1", (unsigned int) port), true));
    EXPECT_TRUE (second.isDiscovering());
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (NetworkDiscovererTest, WithNoTrafficThePollAnswersFalseWithNoMessage)
{
    ASSERT_TRUE (start());
    for (int i = 0; i < 100; ++i)
        EXPECT_FALSE (poll());
    EXPECT_TRUE (context.warnings.empty());
    EXPECT_TRUE (context.errors.empty());
    EXPECT_EQ (footprint.getInformation(), nullptr);
}

TEST_F (NetworkDiscovererTest, ANeverStartedDiscovererAnswersFalseWithNoMessage)
{
    EXPECT_FALSE (poll());
    EXPECT_TRUE (context.warnings.empty());
}

TEST_F (NetworkDiscovererTest, AStoppedDiscovererWarnsAtEveryPoll)
{
    ASSERT_TRUE (start());
    discoverer.stopDiscovering();
    EXPECT_FALSE (discoverer.isDiscovering());
    EXPECT_FALSE (poll());
    EXPECT_FALSE (poll());
    const juce::String warning = "Error waiting socket 127.0.0.1:" + portText + " reading in NetworkDiscoverer";
    EXPECT_EQ (context.warnings, (std::vector<juce::String> { warning, warning }));
}

TEST_F (NetworkDiscovererTest, TextsOfADiscovererOnEveryAdapterSayAny)
{
    ASSERT_TRUE (discoverer.startDiscovering (context, LocalNetworkAddress (HostIdentifier::any, (unsigned int) port), false));
    discoverer.stopDiscovering();
    EXPECT_FALSE (poll());
    EXPECT_EQ (context.warnings, std::vector<juce::String> { "Error waiting socket Any:" + portText + " reading in NetworkDiscoverer" });
}

TEST_F (NetworkDiscovererTest, AStartAfterAStopListensAgain)
{
    ASSERT_TRUE (start (false));
    discoverer.stopDiscovering();
    ASSERT_TRUE (start (false));
    EXPECT_TRUE (discoverer.isDiscovering());
    EXPECT_TRUE (sendAndRead (alifePacketOf (*announcement)));
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (NetworkDiscovererTest, APacketBecomesTheFootprintOfItsSender)
{
    ASSERT_TRUE (start());
    const juce::Time before = juce::Time::getCurrentTime();
    ASSERT_TRUE (sendAndRead (alifePacketOf (*announcement)));
    const juce::Time after = juce::Time::getCurrentTime();

    EXPECT_EQ (footprint.getAddress().toString(), "127.0.0.1:" + juce::String (sender.getPort()));
    EXPECT_GE (footprint.getAliveTime(), before);
    EXPECT_LE (footprint.getAliveTime(), after);
    auto* information = dynamic_cast<ServerAnnouncement*> (footprint.getInformation());
    ASSERT_NE (information, nullptr);
    EXPECT_TRUE (information->equals (*announcement));
    EXPECT_EQ (information->getUniqueIdentifier(), UniqueIdentifier (0x1234));
    EXPECT_EQ (information->version.toString(), "render-1-main-1.2.3.abc123");
    EXPECT_EQ (information->getParent(), &footprint.information);
    EXPECT_TRUE (context.warnings.empty());
}

TEST_F (NetworkDiscovererTest, OnePollReadsOnePacketAndDrainingEndsWithFalse)
{
    ASSERT_TRUE (start());
    for (const char* name : { "first", "second", "third" })
    {
        announcement->name.set (name, false);
        ASSERT_TRUE (sender.send (alifePacketOf (*announcement), port));
    }
    juce::StringArray names;
    ASSERT_TRUE (pollUntilFootprint (discoverer, context, footprint));
    names.add (footprint.getInformation()->getLabelText());
    while (names.size() < 3 && pollUntilFootprint (discoverer, context, footprint))
        names.add (footprint.getInformation()->getLabelText());
    EXPECT_EQ (names.joinIntoString (","), "first,second,third");
    EXPECT_FALSE (poll());
}

TEST_F (NetworkDiscovererTest, ANewPacketReplacesTheInformationAndDeletesTheOldOne)
{
    ASSERT_TRUE (start());
    ASSERT_TRUE (sendAndRead (alifePacketOf (*announcement)));
    DeletionWatcher watcher (*footprint.getInformation());
    announcement->name.set ("render-2", false);
    ASSERT_TRUE (sendAndRead (alifePacketOf (*announcement)));
    EXPECT_TRUE (watcher.deleted);
    EXPECT_EQ (footprint.getInformation()->getLabelText(), "render-2");
}

TEST_F (NetworkDiscovererTest, APacketThatIsNoStateGivesOneWarningWithTheSenderAndLeavesTheFootprint)
{
    ASSERT_TRUE (start());
    ASSERT_TRUE (sendAndRead (alifePacketOf (*announcement)));
    auto* information = footprint.getInformation();
    const juce::Time aliveTime = footprint.getAliveTime();

    EXPECT_FALSE (sendAndRead (juce::MemoryBlock ("hello", 5)));
    ASSERT_EQ (context.warnings.size(), 1u);
    EXPECT_EQ (context.warnings[0], "NetworkDiscoverer with socket " + socketText() + " could not load discovered state:Unexpected binary stream version: 40");
    EXPECT_EQ (footprint.getInformation(), information);
    EXPECT_EQ (footprint.getAliveTime(), aliveTime);
    EXPECT_FALSE (poll());
}

TEST_F (NetworkDiscovererTest, APacketOfAClassUnknownHereGivesTheCreationErrorOnOneLine)
{
    ASSERT_TRUE (start());
    EXPECT_FALSE (sendAndRead (packetOfText ("'VanishedServerInfo @12 {name = \"render-1\"}")));
    ASSERT_EQ (context.warnings.size(), 1u);
    EXPECT_EQ (context.warnings[0], "Error: Could not find class \"VanishedServerInfo\" in NetworkDiscoverer with socket " + socketText());
    EXPECT_EQ (footprint.getInformation(), nullptr);
}

TEST_F (NetworkDiscovererTest, APacketOfAStateWithoutClassGivesTheCreationErrorOnOneLine)
{
    ASSERT_TRUE (start());
    EXPECT_FALSE (sendAndRead (packetOfText ("{name = \"render-1\"}")));
    EXPECT_EQ (context.warnings, std::vector<juce::String> { "Error: no class expression in NetworkDiscoverer with socket " + socketText() });
}

TEST_F (NetworkDiscovererTest, APacketThatFillsTheBufferGivesTheFloodedWarningAndIsStillRead)
{
    ASSERT_TRUE (start());
    juce::MemoryBlock packet = alifePacketOf (*announcement);
    packet.setSize ((size_t) NetworkDiscoverer::bufferSize, true);
    ASSERT_EQ (packet.getSize(), 65536u);

    EXPECT_TRUE (discoverer.readPacket (context, footprint, packet.getData(), (int) packet.getSize(), "10.0.0.7", 9000));
    EXPECT_EQ (context.warnings, std::vector<juce::String> {
        "NetworkDiscoverer Flooded / too large packet received by socket 127.0.0.1:" + portText + " <- 10.0.0.7:9000" });
    ASSERT_NE (footprint.getInformation(), nullptr);
    EXPECT_TRUE (footprint.getInformation()->equals (*announcement));
    EXPECT_EQ (footprint.getAddress().toString(), "10.0.0.7:9000");
}

TEST_F (NetworkDiscovererTest, TheLargestDatagramArrivesWholeWithoutWarning)
{
    ASSERT_TRUE (start());
    auto packet = alifePacketOf (*announcement);
    const size_t size = packet.getSize();
    // The reader stops where the State ends: whatever follows it is ignored.
    packet.setSize (65507, true);
    ASSERT_TRUE (sendAndRead (packet));
    EXPECT_TRUE (context.warnings.empty());
    EXPECT_TRUE (footprint.getInformation()->equals (*announcement));
    EXPECT_LT (size, 65507u);
}

TEST_F (NetworkDiscovererTest, ACutPacketIsCompletedByTheBytesOfALongerOneBeforeIt)
{
    ASSERT_TRUE (start());
    const auto whole = alifePacketOf (*announcement);
    ASSERT_TRUE (sendAndRead (whole));
    // The reader parses the whole buffer, in which the earlier packet's tail is still there.
    ASSERT_TRUE (sendAndRead (juce::MemoryBlock (whole.getData(), whole.getSize() / 2)));
    EXPECT_TRUE (footprint.getInformation()->equals (*announcement));
    EXPECT_TRUE (context.warnings.empty());
}
