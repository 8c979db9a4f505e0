#include "RemoteCallTestSupport.h"
#include "Network/ConnectionTestSupport.h"
#include "Support/FreePort.h"
#include "Support/ScratchDirectory.h"
#include "Support/TestProcess.h"
#include <Tov/Message/InterprocessConnectionMessageTarget.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/ProgramGetSoftwareVersionMethod.h>
#include <signal.h>
#include <thread>

using namespace tov;
using namespace tov::test;

// The callee in a process of its own (RemoteCallTestApplication), killed while calls wait for it.
namespace
{
class RemoteCallProcessTest : public RemoteCallTestBase
{
protected:
    const int port = findFreePort();
    ScratchDirectory home;
    std::vector<juce::String> lines;
    PeerService service { "Caller" };
    TestPeer& caller = service.addPeer (makeIdentifier (1));
    InterprocessConnection client;
    RecordingConnectionListener clientListener;
    std::unique_ptr<TestProcess> callee;

    void SetUp() override
    {
        ASSERT_TRUE (service.startService (true));
        addLineRecordingView (service.context, lines);
        callee = std::make_unique<TestProcess> (juce::StringArray { juce::String (TOV_REMOTE_CALL_TEST_APPLICATION_PATH), juce::String (port) },
                                                std::map<juce::String, juce::String> { { "HOME", home.getFullPathName() }, { "ProgramData", home.getFullPathName() } });
        ASSERT_TRUE (callee->waitForLine ("listening", 30000)) << callee->getOutput();
        ASSERT_TRUE (connectClientForwardingToProgram (client, clientListener, port));
    }

    void TearDown() override
    {
        client.disconnect();
        client.setListener (nullptr);
        callee.reset();
    }

    MessageTarget& farCallee()
    {
        String name;
        name.set ("callee", false);
        return InterprocessConnectionMessageTarget::getOrCreateThrough (client, name);
    }
};
} // namespace

TEST_F (RemoteCallProcessTest, CallsWaitingForAKilledCalleeEndByTimeOutOrByCancellationOnly)
{
    SingletonMethodRemoteCall call (new ProgramGetSoftwareVersionMethod());

    // The first call is answered, by the other process's program.
    Owned<Object> first (call.callPerform (caller, farCallee(), 30000, nullptr));
    auto* version = dynamic_cast<SoftwareVersion*> (first.get());
    ASSERT_NE (version, nullptr) << callee->getOutput();
    EXPECT_EQ (version->versionNumberToString ("."), "2.5.7");
    EXPECT_EQ (version->getBranchName().get(), "remote");

    // The next ones arrive and wait; the callee dies while they do.
    RecordingCompletionRoutine routine;
    ASSERT_TRUE (call.callPerformAsync (caller, farCallee(), routine, nullptr));
    ASSERT_TRUE (call.callPerformAsync (caller, farCallee(), routine, nullptr));
    std::atomic<int> killed { -2 };
    std::thread killer ([&]
    {
        if (! callee->waitForLine ("stalling", 30000))
            return;
        killed = ::kill (callee->getProcessId(), SIGKILL);
        callee->waitForExit (30000);
    });
    EXPECT_EQ (call.callPerform (caller, farCallee(), 3000, nullptr), nullptr);
    killer.join();
    EXPECT_EQ (killed.load(), 0) << callee->getOutput();
    EXPECT_EQ (lines, std::vector<juce::String> { "error Time-out while waiting for call " + call.getFriendlyName() });

    // The loss of the connection completes nothing.
    ASSERT_TRUE (clientListener.events.waitForCount ("lost", 1));
    for (int pass = 0; pass < 10; ++pass)
        service.callServiceUpdate (true);
    EXPECT_EQ (routine.getNumCompletions(), 0u);
    EXPECT_EQ (caller.getNumCompletionRoutines(), 3u);

    // Cancelling completes the two waiting routines with null, and the table is empty: the
    // entry of the synchronous call, whose routine died with its wait, goes without a call.
    caller.cancelAllCompletionRoutines();
    auto completions = routine.getLines();
    std::sort (completions.begin(), completions.end());
    EXPECT_EQ (completions, (std::vector<juce::String> { "1 null", "2 null" }));
    EXPECT_EQ (caller.getNumCompletionRoutines(), 0u);
}
