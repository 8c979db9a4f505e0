#include "../Support/LogTestSupport.h"
#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/StandardOutputExecutionContextView.h>
#include <gtest/gtest.h>

using namespace tov;
using tov::test::ManualClock;
using tov::test::StreamCapture;

TEST (StandardOutputExecutionContextViewTest, WritesLinesWithCrLfAndEchoesEachPiece)
{
    ManualClock::now = 0.0;
    StreamCapture out (std::cout);
    StreamCapture debug (std::cerr);
    {
        ExecutionContext context;
        auto* view = new StandardOutputExecutionContextView();
        view->setMillisecondClock (&ManualClock::get);
        context.addView (view);
        context.enter ("Run");
        context.information ("a");
        ManualClock::now = 4.0;
    }
    EXPECT_EQ (out.get(), "Run\r\n  Information: a\r\nDone Run (4 ms)");

    // Each piece is one debug output; a piece that ends with "\n" loses it there only.
    EXPECT_EQ (debug.get(), "Run\n\r\n  \nInformation: a\n\r\nDone Run (4 ms)\n");
}

TEST (StandardOutputExecutionContextViewTest, AnEmptyBlockKeepsItsTimeOnItsLine)
{
    ManualClock::now = 0.0;
    StreamCapture out (std::cout);
    StreamCapture debug (std::cerr);
    ExecutionContext context;
    auto* view = new StandardOutputExecutionContextView();
    view->setMillisecondClock (&ManualClock::get);
    context.addView (view);
    context.enter ("Quick");
    ManualClock::now = 0.5;
    context.leave();
    context.warning ("w");
    EXPECT_EQ (out.get(), "Quick (0.5 ms)\r\nWarning: w");
}
