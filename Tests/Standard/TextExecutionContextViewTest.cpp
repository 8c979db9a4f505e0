#include "../Support/LogTestSupport.h"
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/TextExecutionContextView.h>
#include <gtest/gtest.h>

using namespace tov;
using tov::test::ManualClock;

namespace
{

/** Keeps what it prints; a flush shows as "#" so that its place can be checked too. */
class RecordingView : public TextExecutionContextView
{
public:
    RecordingView() { setMillisecondClock (&ManualClock::get); }
    ~RecordingView() override { leaveAllIndentationLevels(); }

    void print (const juce::String& text) override  { output += text; }
    void flush() override                           { output += "#"; }

    using TextExecutionContextView::leaveAllIndentationLevels;
    juce::String output;
};

struct Fixture : public ::testing::Test
{
    Fixture()
    {
        ManualClock::now = 1000.0;
        context.addView (view);
    }

    ExecutionContext context;
    RecordingView* view = new RecordingView();
};

using TextExecutionContextViewTest = Fixture;

} // namespace

TEST_F (TextExecutionContextViewTest, LinesEndOnlyWhenTheNextLineStarts)
{
    context.information ("one");
    context.warning ("two");
    context.error ("three");
    EXPECT_EQ (view->output, "Information: one#\r\nWarning: two#\r\nError: three#");
}

TEST_F (TextExecutionContextViewTest, ABlockWithoutLinesGetsItsTimeOnItsOwnLine)
{
    context.enter ("Loading");
    ManualClock::now = 1012.5;
    context.leave();
    context.information ("after");
    EXPECT_EQ (view->output, "Loading# (12.5 ms)#\r\nInformation: after#");
}

TEST_F (TextExecutionContextViewTest, ABlockWithLinesEndsWithDoneAtItsOwnIndentation)
{
    context.enter ("Program");
    context.enter ("Loading");
    context.information ("file a");
    context.information ("file b");
    ManualClock::now = 1012.5;
    context.leave();
    ManualClock::now = 1100.0;
    context.leave();
    EXPECT_EQ (view->output,
               "Program#\r\n"
               "  Loading#\r\n"
               "    Information: file a#\r\n"
               "    Information: file b#\r\n"
               "  Done Loading (12.5 ms)#\r\n"
               "Done Program (100 ms)#");
}

TEST_F (TextExecutionContextViewTest, AnUnnamedBlockWithLinesEndsWithDoneAndItsTime)
{
    context.enter ("");
    context.information ("inside");
    ManualClock::now = 1000.25;
    context.leave();
    EXPECT_EQ (view->output, "#\r\n  Information: inside#\r\nDone (0.25 ms)#");
}

TEST_F (TextExecutionContextViewTest, AnUnnamedBlockWithoutLinesGetsItsTimeOnAnEmptyLine)
{
    context.enter ("");
    ManualClock::now = 1003.0;
    context.leave();
    EXPECT_EQ (view->output, "# (3 ms)#");
}

TEST_F (TextExecutionContextViewTest, LeaveAtDepthZeroPrintsNothing)
{
    context.leave();
    context.information ("x");
    context.leave();
    EXPECT_EQ (view->output, "Information: x#");
    EXPECT_EQ (view->getDepth(), 0u);
}

TEST_F (TextExecutionContextViewTest, OnlyTheFirstLineOfAMessageIsIndented)
{
    context.enter ("Block");
    context.error ("first\nsecond\nthird");
    EXPECT_EQ (view->output, "Block#\r\n  Error: first\r\nsecond\r\nthird#");
}

TEST_F (TextExecutionContextViewTest, TimingsUseTheDefaultTextOfADouble)
{
    context.enter ("Slow");
    ManualClock::now = 1000.0 + 1234.5678;
    context.leave();
    EXPECT_EQ (view->output, "Slow# (1234.57 ms)#");
}

TEST_F (TextExecutionContextViewTest, AnswersAreShownWithTheQuestion)
{
    view->askedCallback ("Save?", "Yes", false);
    view->askedCallback ("Quit?", "No", true);
    EXPECT_EQ (view->output, "Asked: Save? => Yes#\r\nAsked: Quit? => Canceled#");
}

TEST_F (TextExecutionContextViewTest, TheSubjectIsIgnored)
{
    SuccessStatus subject;
    context.information ("with subject", &subject);
    EXPECT_EQ (view->output, "Information: with subject#");
}

TEST_F (TextExecutionContextViewTest, LeaveAllIndentationLevelsClosesEveryBlockWithItsTiming)
{
    context.enter ("Outer");
    context.information ("x");
    context.enter ("Inner");
    ManualClock::now = 1002.0;
    view->leaveAllIndentationLevels();
    EXPECT_EQ (view->getDepth(), 0u);
    EXPECT_EQ (view->output, "Outer#\r\n  Information: x#\r\n  Inner# (2 ms)#\r\nDone Outer (2 ms)#");

    // Balanced again: a further leave does nothing.
    context.leave();
    EXPECT_EQ (view->output, "Outer#\r\n  Information: x#\r\n  Inner# (2 ms)#\r\nDone Outer (2 ms)#");
}

TEST_F (TextExecutionContextViewTest, TheDefaultClockIsJucesHighResolutionCounter)
{
    struct DefaultClockView : public TextExecutionContextView
    {
        void print (const juce::String& text) override  { output += text; }
        void flush() override                           {}
        juce::String output;
    } defaultView;

    defaultView.enteredCallback ("Wait");
    juce::Thread::sleep (20);
    defaultView.leavedCallback();
    const auto time = defaultView.output.fromFirstOccurrenceOf ("Wait (", false, false).upToFirstOccurrenceOf (" ms)", false, false);
    EXPECT_GE (time.getDoubleValue(), 19.0);
    EXPECT_LT (time.getDoubleValue(), 2000.0);
}
