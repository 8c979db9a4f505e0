#include "TaskTestSupport.h"
#include "Message/MessageTestSupport.h"

using namespace tov;
using namespace tov::test;

namespace
{
/** Tasks inside peer 1 of a service on the test's thread, whose terminated events go to peer 2. */
class TaskEventTest : public MessageTest
{
protected:
    PeerService service;
    bool serviceRuns = service.startService (true);
    TestPeer& sender = service.addPeer (makeIdentifier (1));
    TestPeer& receiver = service.addPeer (makeIdentifier (2));
    StepTask task { "Export", 0.5, 0.0 };

    void SetUp() override
    {
        ensureTaskTestLibrary();
        task.setParent (&sender);
        task.getTerminatedEvent().registerEvent (makeIdentifier (2), new RecordingMessage ("terminated"));
    }

    void updateTask (int count)
    {
        for (int i = 0; i < count; ++i)
            task.update();
    }
};
} // namespace

TEST_F (TaskEventTest, TheEventIsSignalledOnceWhenTheTaskTerminates)
{
    updateTask (2);
    service.callServiceUpdate (true);
    EXPECT_TRUE (receiver.lines.empty());
    updateTask (4);
    service.callServiceUpdate (true);
    EXPECT_EQ (receiver.lines, (std::vector<juce::String> { "terminated from 1" }));
}

TEST_F (TaskEventTest, AFailedInitializationSignalsTheEvent)
{
    task.initializationError = "no licence";
    updateTask (1);
    service.callServiceUpdate (true);
    EXPECT_EQ (receiver.lines, (std::vector<juce::String> { "terminated from 1" }));
}

TEST_F (TaskEventTest, ACanceledTaskSignalsTheEventAtItsLastUpdate)
{
    updateTask (2);
    task.cancel();
    service.callServiceUpdate (true);
    EXPECT_TRUE (receiver.lines.empty());
    updateTask (1);
    service.callServiceUpdate (true);
    EXPECT_EQ (receiver.lines, (std::vector<juce::String> { "terminated from 1" }));
}
