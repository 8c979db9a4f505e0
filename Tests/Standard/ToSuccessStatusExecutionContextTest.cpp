#include "../Support/MessageCountingView.h"
#include <Tov/Standard/ToSuccessStatusExecutionContext.h>
#include <gtest/gtest.h>

using namespace tov;
using tov::test::MessageCountingView;
using tov::test::addCountingViewAndSendThreeMessages;

TEST (ToSuccessStatusExecutionContextTest, TheLastMessageWins)
{
    SuccessStatus status;
    ToSuccessStatusExecutionContext context (status);

    context.error ("broken");
    EXPECT_TRUE (status.isError());
    EXPECT_EQ (status.getMessage(), "broken");

    context.warning ("odd");
    EXPECT_TRUE (status.isWarning());
    EXPECT_EQ (status.getMessage(), "odd");

    // An information after an error still leaves a success: the last one wins.
    context.information ("fine");
    EXPECT_TRUE (status.isSuccess());
    EXPECT_EQ (status.getMessage(), "fine");
}

TEST (ToSuccessStatusExecutionContextTest, ForwardsToItsViewsWithAndWithoutTarget)
{
    int count = 0;
    ToSuccessStatusExecutionContext withoutTarget;
    addCountingViewAndSendThreeMessages (withoutTarget, count);
    EXPECT_EQ (count, 3);

    SuccessStatus status;
    ToSuccessStatusExecutionContext withTarget;
    withTarget.setTarget (status);
    withTarget.addView (new MessageCountingView (count));
    withTarget.warning ("d");
    EXPECT_EQ (count, 4);
    EXPECT_TRUE (status.isWarning());
}

TEST (ToSuccessStatusExecutionContextTest, IsAReflectedClass)
{
    ToSuccessStatusExecutionContext context;
    EXPECT_EQ (context.getClassName(), "ToSuccessStatusExecutionContext");
}
