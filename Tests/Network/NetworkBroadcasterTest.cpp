// The sending side of discovery on loopback, whose broadcast address is its own: packets are
// caught by a plain socket or a discoverer on 127.0.0.1, time runs on a manual clock.
#include "DiscoveryTestSupport.h"
#include "Support/LogTestSupport.h"
#include "Support/RecordingExecutionContext.h"
#include "Support/TestValues.h"
#include "Standard/Profiler/ProfilerTestSupport.h"
#include <Tov/Core/State.h>

using namespace tov;
using namespace tov::test;
using tov::testing::RecordingExecutionContext;

namespace
{
/** Exposes the socket, which a test shuts down as the layer below would. */
class ExposedBroadcaster : public NetworkBroadcaster
{
public:
    using NetworkBroadcaster::getSocket;
};

class NetworkBroadcasterTest : public ::testing::Test
{
protected:
    ExposedBroadcaster broadcaster;
    RecordingExecutionContext context;
    DatagramEnd receiver;
    Owned<ServerAnnouncement> announcement { ServerAnnouncement::create ("render-1", 7000, 0x1234) };

    void SetUp() override
    {
        ensureNetworkTestLibrary();
        ManualClock::now = 1000.0;
        broadcaster.setMillisecondClock (&ManualClock::get);
    }

    bool start (double periodInSeconds = 1.0, int localPort = 0)
    {
        return broadcaster.startBroadcasting (context, "127.0.0.1", (size_t) localPort, (size_t) receiver.getPort(), periodInSeconds);
    }

    /** Updates at the time given on the manual clock. */
    void updateAt (double milliseconds, const Object& information)
    {
        ManualClock::now = milliseconds;
        broadcaster.updateBroadcasting (information);
    }

    /** The next packet that reached the receiver, or an empty block. */
    juce::MemoryBlock nextPacket (int timeOutMilliseconds = 20000)
    {
        juce::MemoryBlock packet;
        receiver.receive (packet, timeOutMilliseconds);
        return packet;
    }
};

/** An announcement whose packet is exactly size bytes: its name fills what the rest leaves. */
Owned<ServerAnnouncement> announcementOfPacketSize (int size)
{
    Owned<ServerAnnouncement> announcement { ServerAnnouncement::create ({}, 7000, 0x99) };
    for (int nameLength = size; nameLength > 0;)
    {
        announcement->name.set (juce::String::repeatedString ("x", nameLength), false);
        const int difference = size - (int) alifePacketOf (*announcement).getSize();
        if (difference == 0)
            break;
        nameLength += difference;
    }
    return announcement;
}
} // namespace

TEST_F (NetworkBroadcasterTest, VariablesInOrderWithAPeriodOfOneSecondByDefault)
{
    ASSERT_EQ (broadcaster.getNumVariables(), 3u);
    EXPECT_EQ (broadcaster.getVariableByName ("localNetworkAddress"), &broadcaster.localNetworkAddress);
    EXPECT_EQ (broadcaster.getVariable (1)->getClassName(), "NetworkPort");
    EXPECT_EQ (broadcaster.getVariable (2)->getClassName(), "Seconds");
    EXPECT_EQ (broadcaster.getVariableByName ("periodInSeconds"), &broadcaster.periodInSeconds);
    EXPECT_EQ (NetworkBroadcaster().periodInSeconds.get(), 1.0);
    EXPECT_EQ (createOwned<NetworkBroadcaster>()->periodInSeconds.get(), 1.0);
    EXPECT_EQ (NetworkBroadcaster().getClass()->getMemberVariableSignature (2)->getAttribute ("default")->toString(), "1.");
    EXPECT_FALSE (NetworkBroadcaster().isBroadcasting());
}

TEST_F (NetworkBroadcasterTest, StartBindsTheLocalAddressAndAimsAtItsAdaptersBroadcastAddress)
{
    ASSERT_TRUE (start (0.5));
    EXPECT_TRUE (broadcaster.isBroadcasting());
    EXPECT_EQ (broadcaster.localNetworkAddress.toString(), "127.0.0.1:0");
    EXPECT_EQ (broadcaster.remotePort.get(), receiver.getPort());
    EXPECT_EQ (broadcaster.periodInSeconds.get(), 0.5);
    // The loopback adapter's broadcast address is its own.
    EXPECT_EQ (broadcaster.getRemoteHost(), "127.0.0.1");
    EXPECT_GT (broadcaster.getSocket().getBoundPort(), 0);
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (NetworkBroadcasterTest, StartWhenBroadcastingAnswersTrueAndKeepsTheOldSettings)
{
    ASSERT_TRUE (start (0.5));
    const int boundPort = broadcaster.getSocket().getBoundPort();
    RecordingExecutionContext otherContext;
    EXPECT_TRUE (broadcaster.startBroadcasting (otherContext, "203.0.113.7", 4321, 4322, 9.0));
    EXPECT_EQ (broadcaster.localNetworkAddress.toString(), "127.0.0.1:0");
    EXPECT_EQ (broadcaster.remotePort.get(), receiver.getPort());
    EXPECT_EQ (broadcaster.periodInSeconds.get(), 0.5);
    EXPECT_EQ (broadcaster.getRemoteHost(), "127.0.0.1");
    EXPECT_EQ (broadcaster.getSocket().getBoundPort(), boundPort);
    EXPECT_TRUE (otherContext.errors.empty());
}

TEST_F (NetworkBroadcasterTest, StartOnAnIpOfNoAdapterFailsWithTheBindError)
{
    EXPECT_FALSE (broadcaster.startBroadcasting (context, "203.0.113.7", 4321, 4322, 1.0));
    EXPECT_EQ (context.errors, std::vector<juce::String> { "Could not bind port to broadcast 203.0.113.7:4321" });
    EXPECT_FALSE (broadcaster.isBroadcasting());
    ManualClock::now = 1.0e9;
    EXPECT_FALSE (broadcaster.shouldSendAlifePacket());
}

TEST_F (NetworkBroadcasterTest, StartOnAPortTakenWithoutReuseFailsWithTheBindError)
{
    DatagramEnd taken;
    EXPECT_FALSE (start (1.0, taken.getPort()));
    EXPECT_EQ (context.errors, std::vector<juce::String> { "Could not bind port to broadcast 127.0.0.1:" + juce::String (taken.getPort()) });
    EXPECT_FALSE (broadcaster.isBroadcasting());
}

TEST_F (NetworkBroadcasterTest, TheFirstPacketIsDueWhenAPeriodHasPassedSinceTheStart)
{
    ASSERT_TRUE (start (1.0));
    EXPECT_FALSE (broadcaster.shouldSendAlifePacket());
    ManualClock::now = 2000.0;
    EXPECT_FALSE (broadcaster.shouldSendAlifePacket());
    ManualClock::now = 2000.5;
    EXPECT_TRUE (broadcaster.shouldSendAlifePacket());
}

TEST_F (NetworkBroadcasterTest, UpdatesBeforeThePeriodSendNothing)
{
    ASSERT_TRUE (start (1.0));
    announcement->name.set ("early", false);
    updateAt (1500.0, *announcement);
    updateAt (2000.0, *announcement);
    announcement->name.set ("due", false);
    updateAt (2001.0, *announcement);
    EXPECT_EQ (nextPacket(), alifePacketOf (*announcement));
    EXPECT_TRUE (nextPacket (0).isEmpty());
}

TEST_F (NetworkBroadcasterTest, OnePacketPerPeriodCountedFromTheLastOne)
{
    ASSERT_TRUE (start (1.0));
    announcement->name.set ("first", false);
    updateAt (2001.0, *announcement);
    const auto first = alifePacketOf (*announcement);
    announcement->name.set ("too soon", false);
    updateAt (2500.0, *announcement);
    updateAt (3001.0, *announcement);
    announcement->name.set ("second", false);
    updateAt (3001.5, *announcement);
    EXPECT_EQ (nextPacket(), first);
    EXPECT_EQ (nextPacket(), alifePacketOf (*announcement));
    EXPECT_TRUE (nextPacket (0).isEmpty());
}

TEST_F (NetworkBroadcasterTest, AStoppedOrNeverStartedBroadcasterIsNeverDue)
{
    EXPECT_FALSE (broadcaster.shouldSendAlifePacket());
    ASSERT_TRUE (start (1.0));
    broadcaster.stopBroadcasting();
    EXPECT_FALSE (broadcaster.isBroadcasting());
    EXPECT_EQ (broadcaster.getSocket().getBoundPort(), -1);
    updateAt (1.0e9, *announcement);
    EXPECT_FALSE (broadcaster.shouldSendAlifePacket());
    EXPECT_TRUE (nextPacket (0).isEmpty());
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (NetworkBroadcasterTest, StartedAtTimeZeroTheFirstPacketIsDueAtOnce)
{
    ManualClock::now = 0.0;
    ASSERT_TRUE (start (1.0));
    EXPECT_TRUE (broadcaster.shouldSendAlifePacket());
    updateAt (0.0, *announcement);
    EXPECT_EQ (nextPacket(), alifePacketOf (*announcement));
}

TEST_F (NetworkBroadcasterTest, ThePacketIsTheDeepBinaryStateWithClassAndIdentifierAlone)
{
    ASSERT_TRUE (start (1.0));
    updateAt (2001.0, *announcement);
    const auto packet = nextPacket();
    EXPECT_EQ (packet, alifePacketOf (*announcement));

    juce::MemoryInputStream input (packet, false);
    juce::String error;
    State state;
    ASSERT_TRUE (state.loadFromBinary (input, error)) << error;
    EXPECT_EQ (input.getNumBytesRemaining(), 0);
    EXPECT_EQ (state.getClass(), &ServerAnnouncement::getStaticClass());
    EXPECT_EQ (state.getUniqueIdentifier(), UniqueIdentifier (0x1234));
    EXPECT_EQ (state.getVariableStateByNameRef ("name")->getString(), "render-1");
    EXPECT_EQ (state.getVariableStateByNameRef ("version")->getVariableStateByNameRef ("majorVersion")->getInteger(), 1);
    EXPECT_EQ (state.getVariableStateByNameRef ("port")->getInteger(), 7000);
}

TEST_F (NetworkBroadcasterTest, ThePacketOfTheLargestDatagramLeavesWhole)
{
    auto largest = announcementOfPacketSize (65507);
    ASSERT_EQ (alifePacketOf (*largest).getSize(), 65507u);
    ASSERT_TRUE (start (1.0));
    updateAt (2001.0, *largest);
    EXPECT_EQ (nextPacket(), alifePacketOf (*largest));
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (NetworkBroadcasterTest, AfterAFailedSendTheNextTryIsAWholePeriodLater)
{
    // One byte more than an IPv4 datagram can carry.
    auto tooLarge = announcementOfPacketSize (65508);
    ASSERT_EQ (alifePacketOf (*tooLarge).getSize(), 65508u);
    ASSERT_TRUE (start (1.0));
    updateAt (2001.0, *tooLarge);
    EXPECT_EQ (context.errors, std::vector<juce::String> { "Error when sending on socket" });
    EXPECT_TRUE (broadcaster.isBroadcasting());

    updateAt (2500.0, *tooLarge);
    updateAt (3001.0, *tooLarge);
    EXPECT_EQ (context.errors.size(), 1u);
    EXPECT_FALSE (broadcaster.shouldSendAlifePacket());
    updateAt (3001.5, *announcement);
    EXPECT_EQ (nextPacket(), alifePacketOf (*announcement));
    EXPECT_EQ (context.errors.size(), 1u);
}

TEST_F (NetworkBroadcasterTest, FailuresGoToTheStartContextAndToNobodyOnceItIsGone)
{
    auto tooLarge = announcementOfPacketSize (65508);
    auto startContext = std::make_unique<RecordingExecutionContext>();
    ASSERT_TRUE (broadcaster.startBroadcasting (*startContext, "127.0.0.1", 0, (size_t) receiver.getPort(), 1.0));
    updateAt (2001.0, *tooLarge);
    EXPECT_EQ (startContext->errors, std::vector<juce::String> { "Error when sending on socket" });

    startContext.reset();
    updateAt (3002.0, *tooLarge);
    EXPECT_FALSE (broadcaster.shouldSendAlifePacket());
    updateAt (4003.0, *announcement);
    EXPECT_EQ (nextPacket(), alifePacketOf (*announcement));
}

TEST_F (NetworkBroadcasterTest, ASocketShutDownBeneathIsBoundAgainForTheNextPacket)
{
    const int localPort = findFreeUdpPort();
    ASSERT_TRUE (start (1.0, localPort));
    broadcaster.getSocket().shutdown();
    EXPECT_EQ (broadcaster.getSocket().getBoundPort(), -1);
    EXPECT_TRUE (broadcaster.isBroadcasting());

    updateAt (2001.0, *announcement);
    int senderPort = 0;
    juce::MemoryBlock packet;
    ASSERT_TRUE (receiver.receive (packet, 20000, &senderPort));
    EXPECT_EQ (packet, alifePacketOf (*announcement));
    EXPECT_EQ (senderPort, localPort);
    EXPECT_EQ (broadcaster.getSocket().getBoundPort(), localPort);
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (NetworkBroadcasterTest, ASocketShutDownBeneathThatCannotBeBoundAgainGivesTheBindError)
{
    const int localPort = findFreeUdpPort();
    ASSERT_TRUE (start (1.0, localPort));
    broadcaster.getSocket().shutdown();
    DatagramEnd taken (localPort);
    ASSERT_EQ (taken.getPort(), localPort);

    updateAt (2001.0, *announcement);
    EXPECT_EQ (context.errors, std::vector<juce::String> { "Could not bind port to broadcast" });
    EXPECT_TRUE (nextPacket (0).isEmpty());
    EXPECT_FALSE (broadcaster.shouldSendAlifePacket());
}

TEST_F (NetworkBroadcasterTest, AStartAfterAStopBindsAFreshSocketToTheNewAddress)
{
    ASSERT_TRUE (start (1.0));
    broadcaster.stopBroadcasting();
    const int localPort = findFreeUdpPort();
    ASSERT_TRUE (start (2.0, localPort));
    EXPECT_EQ (broadcaster.getSocket().getBoundPort(), localPort);
    EXPECT_EQ (broadcaster.periodInSeconds.get(), 2.0);

    updateAt (3001.0, *announcement);
    int senderPort = 0;
    juce::MemoryBlock packet;
    ASSERT_TRUE (receiver.receive (packet, 20000, &senderPort));
    EXPECT_EQ (senderPort, localPort);
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (NetworkBroadcasterTest, TheWordsOfEachOutcomeOfASocketWrite)
{
    juce::String error;
    EXPECT_FALSE (NetworkBroadcaster::checkSentSize (-1, 120, error));
    EXPECT_EQ (error, "Error when sending on socket");
    EXPECT_FALSE (NetworkBroadcaster::checkSentSize (0, 120, error));
    EXPECT_EQ (error, "Could not send on socket");
    EXPECT_FALSE (NetworkBroadcaster::checkSentSize (100, 120, error));
    EXPECT_EQ (error, "Could only send 100 / 120 bytes");
    error.clear();
    EXPECT_TRUE (NetworkBroadcaster::checkSentSize (120, 120, error));
    EXPECT_EQ (error, "");
}

TEST_F (NetworkBroadcasterTest, OnEveryAdapterThePacketsAimAtAnAddressOfNoAdapter)
{
    ASSERT_TRUE (broadcaster.startBroadcasting (context, HostIdentifier::any, 0, (size_t) receiver.getPort(), 1.0));
    EXPECT_EQ (broadcaster.getRemoteHost(), "0.0.0.0");
}

TEST_F (NetworkBroadcasterTest, APacketIsSentInsideTheScopeSendAlifePacket)
{
    ASSERT_TRUE (start (1.0));
    InstalledProfiler<RecordingStackProfiler> profiler;
    updateAt (1500.0, *announcement);
    updateAt (2001.0, *announcement);
    ASSERT_EQ (nextPacket(), alifePacketOf (*announcement));
    const std::vector<std::string> expected { "make SendAlifePacket 0", "finished SendAlifePacket at 1" };
    EXPECT_EQ (profiler->getCalls(), expected);
}
