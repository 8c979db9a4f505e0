#include "../Support/CapturedTextViewTest.h"
#include <Tov/Standard/DebugOutputExecutionContextView.h>
#include <gtest/gtest.h>

using namespace tov;
using tov::test::ManualClock;

using DebugOutputExecutionContextViewTest = tov::test::CapturedTextViewTest<DebugOutputExecutionContextView>;

TEST_F (DebugOutputExecutionContextViewTest, EachLineIsOneDebugOutputWithTwoBlanksPerLevel)
{
    context->enter ("Load");
    context->information ("a");
    context->enter ("Inner");
    context->warning ("b");
    ManualClock::now = 5.0;
    context->leave();
    context->leave();
    endContextAt (5.0);
    EXPECT_EQ (debugOutput.get(),
               "Load\n"
               "  Information: a\n"
               "  Inner\n"
               "    Warning: b\n"
               "  Done Inner (5 ms)\n"
               "Done Load (5 ms)\n");
}

TEST_F (DebugOutputExecutionContextViewTest, TheTimingOfAnEmptyBlockComesAtTheHeadOfTheNextLine)
{
    runEmptyBlock ("Empty", 2.5);
    context->error ("next");
    EXPECT_EQ (debugOutput.get(), "Empty\n (2.5 ms)Error: next\n");
}

TEST_F (DebugOutputExecutionContextViewTest, DestructionLeavesOpenBlocks)
{
    context->enter ("Open");
    context->information ("x");
    endContextAt (1.0);
    EXPECT_EQ (debugOutput.get(), "Open\n  Information: x\nDone Open (1 ms)\n");
}
