#include <Tov/Standard/ToSuccessStatusExecutionContext.h>
#include <gtest/gtest.h>

using namespace tov;

namespace
{

class CountingView : public ExecutionContextView
{
public:
    explicit CountingView (int& count) : count (count) {}
    void warningCallback (const juce::String&, const Object*) override      { ++count; }
    void errorCallback (const juce::String&, const Object*) override        { ++count; }
    void informationCallback (const juce::String&, const Object*) override  { ++count; }
    int& count;
};

} // namespace

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
    withoutTarget.addView (new CountingView (count));
    withoutTarget.error ("a");
    withoutTarget.warning ("b");
    withoutTarget.information ("c");
    EXPECT_EQ (count, 3);

    SuccessStatus status;
    ToSuccessStatusExecutionContext withTarget;
    withTarget.setTarget (status);
    withTarget.addView (new CountingView (count));
    withTarget.warning ("d");
    EXPECT_EQ (count, 4);
    EXPECT_TRUE (status.isWarning());
}

TEST (ToSuccessStatusExecutionContextTest, IsAReflectedClass)
{
    ToSuccessStatusExecutionContext context;
    EXPECT_EQ (context.getClassName(), "ToSuccessStatusExecutionContext");
}
