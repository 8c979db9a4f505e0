#include "../Support/MessageCountingView.h"
#include <Tov/Standard/ExecutionContext.h>
#include <gtest/gtest.h>

using namespace tov;
using tov::test::MessageCountingView;
using tov::test::addCountingViewAndSendThreeMessages;

TEST (ToStringExecutionContextTest, WritesOneLinePerMessageWithItsPrefix)
{
    juce::String text;
    ToStringExecutionContext context (text);
    context.error ("broken");
    context.warning ("odd");
    context.information ("fine");
    context.enter ("Block");
    context.leave();
    EXPECT_EQ (text, "Error: broken\nWarning: odd\n>fine\n");
}

TEST (ToStringExecutionContextTest, SetTargetRedirectsTheText)
{
    juce::String first, second;
    ToStringExecutionContext context (first);
    context.error ("a");
    context.setTarget (second);
    context.error ("b");
    EXPECT_EQ (first, "Error: a\n");
    EXPECT_EQ (second, "Error: b\n");
}

TEST (ToStringExecutionContextTest, WithoutTargetStillForwardsToItsViews)
{
    int count = 0;
    ToStringExecutionContext context;
    addCountingViewAndSendThreeMessages (context, count);
    EXPECT_EQ (count, 3);
}

TEST (ToStringExecutionContextTest, WithTargetAlsoForwardsToItsViews)
{
    int count = 0;
    juce::String text;
    ToStringExecutionContext context (text);
    context.addView (new MessageCountingView (count));
    context.information ("c");
    EXPECT_EQ (count, 1);
    EXPECT_EQ (text, ">c\n");
}

TEST (ToStringExecutionContextTest, StatusGoesThroughTheOverriddenMessages)
{
    juce::String text;
    ToStringExecutionContext context (text);
    context.status (true, "saved");
    context.status (false, "");
    EXPECT_EQ (text, "Warning: saved\nError: \n");
}

TEST (ToStringExecutionContextTest, IsAReflectedClass)
{
    ToStringExecutionContext context;
    EXPECT_EQ (context.getClassName(), "ToStringExecutionContext");
}
