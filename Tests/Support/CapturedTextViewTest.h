#pragma once

#include "LogTestSupport.h"
#include <Tov/Standard/ExecutionContext.h>
#include <memory>

namespace tov::test
{

/** A fixture for text views that write to the standard or the debug output: a context whose
    one view is a new ViewType timed by ManualClock from 0 ms, with both outputs captured.

    The captures are declared first so that they outlive the context: what the view writes
    when the context ends is caught too, as a test sees it once it has called endContextAt(). */
template <class ViewType>
class CapturedTextViewTest : public ::testing::Test
{
protected:
    CapturedTextViewTest()
    {
        ManualClock::now = 0.0;
        auto* view = new ViewType();
        view->setMillisecondClock (&ManualClock::get);
        context->addView (view);
    }

    /** Enters a block and leaves it that many milliseconds later, with nothing printed in it. */
    void runEmptyBlock (const juce::String& name, double milliseconds)
    {
        context->enter (name);
        ManualClock::now += milliseconds;
        context->leave();
    }

    /** Ends the context at that time on the manual clock, as leaving its scope then would: the
        view closes the blocks still open, with their timings up to that time. */
    void endContextAt (double milliseconds)
    {
        ManualClock::now = milliseconds;
        context.reset();
    }

    StreamCapture standardOutput { std::cout };
    StreamCapture debugOutput { std::cerr };
    std::unique_ptr<ExecutionContext> context = std::make_unique<ExecutionContext>();
};

} // namespace tov::test
