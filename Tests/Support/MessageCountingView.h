#pragma once

#include <Tov/Standard/ExecutionContext.h>

namespace tov::test
{

/** Counts the errors, warnings and informations that reach it, in a counter the test owns. */
class MessageCountingView : public ExecutionContextView
{
public:
    explicit MessageCountingView (int& count) : count (count) {}

    void warningCallback (const juce::String&, const Object*) override      { ++count; }
    void errorCallback (const juce::String&, const Object*) override        { ++count; }
    void informationCallback (const juce::String&, const Object*) override  { ++count; }

private:
    int& count;
};

/** Adds a MessageCountingView on count to the context, then sends the context one error, one
    warning and one information: count then says how many of the three reached the view. */
inline void addCountingViewAndSendThreeMessages (ExecutionContext& context, int& count)
{
    context.addView (new MessageCountingView (count));
    context.error ("a");
    context.warning ("b");
    context.information ("c");
}

} // namespace tov::test
