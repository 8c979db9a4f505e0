#include "../Support/LogTestSupport.h"
#include <Tov/Standard/DebugOutputExecutionContextView.h>
#include <Tov/Standard/ExecutionContext.h>
#include <gtest/gtest.h>

using namespace tov;
using tov::test::ManualClock;
using tov::test::StreamCapture;

TEST (DebugOutputExecutionContextViewTest, EachLineIsOneDebugOutputWithTwoBlanksPerLevel)
{
    ManualClock::now = 0.0;
    StreamCapture capture (std::cerr);
    {
        ExecutionContext context;
        auto* view = new DebugOutputExecutionContextView();
        view->setMillisecondClock (&ManualClock::get);
        context.addView (view);

        context.enter ("Load");
        context.information ("a");
        context.enter ("Inner");
        context.warning ("b");
        ManualClock::now = 5.0;
        context.leave();
        context.leave();
    }
    EXPECT_EQ (capture.get(),
               "Load\n"
               "  Information: a\n"
               "  Inner\n"
               "    Warning: b\n"
               "  Done Inner (5 ms)\n"
               "Done Load (5 ms)\n");
}

TEST (DebugOutputExecutionContextViewTest, TheTimingOfAnEmptyBlockComesAtTheHeadOfTheNextLine)
{
    ManualClock::now = 0.0;
    StreamCapture capture (std::cerr);
    ExecutionContext context;
    auto* view = new DebugOutputExecutionContextView();
    view->setMillisecondClock (&ManualClock::get);
    context.addView (view);

    context.enter ("Empty");
    ManualClock::now = 2.5;
    context.leave();
    context.error ("next");
    EXPECT_EQ (capture.get(), "Empty\n (2.5 ms)Error: next\n");
}

TEST (DebugOutputExecutionContextViewTest, DestructionLeavesOpenBlocks)
{
    ManualClock::now = 0.0;
    StreamCapture capture (std::cerr);
    {
        ExecutionContext context;
        auto* view = new DebugOutputExecutionContextView();
        view->setMillisecondClock (&ManualClock::get);
        context.addView (view);
        context.enter ("Open");
        context.information ("x");
        ManualClock::now = 1.0;
    }
    EXPECT_EQ (capture.get(), "Open\n  Information: x\nDone Open (1 ms)\n");
}
