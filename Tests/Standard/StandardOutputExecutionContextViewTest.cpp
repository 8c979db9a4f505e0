#include "../Support/CapturedTextViewTest.h"
#include <Tov/Standard/StandardOutputExecutionContextView.h>
#include <gtest/gtest.h>

using namespace tov;

using StandardOutputExecutionContextViewTest = tov::test::CapturedTextViewTest<StandardOutputExecutionContextView>;

TEST_F (StandardOutputExecutionContextViewTest, WritesLinesWithCrLfAndEchoesEachPiece)
{
    context->enter ("Run");
    context->information ("a");
    endContextAt (4.0);
    EXPECT_EQ (standardOutput.get(), "Run\r\n  Information: a\r\nDone Run (4 ms)");

    // Each piece is one debug output; a piece that ends with "\n" loses it there only.
    EXPECT_EQ (debugOutput.get(), "Run\n\r\n  \nInformation: a\n\r\nDone Run (4 ms)\n");
}

TEST_F (StandardOutputExecutionContextViewTest, AnEmptyBlockKeepsItsTimeOnItsLine)
{
    runEmptyBlock ("Quick", 0.5);
    context->warning ("w");
    EXPECT_EQ (standardOutput.get(), "Quick (0.5 ms)\r\nWarning: w");
}
