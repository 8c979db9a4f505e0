#pragma once

#include "Profiler.h"

namespace tov
{

/** Marks the scope it lives in as a named event of the installed profiler.

        {
            ProfilerScope scope ("PreciseSleep");
            ...
        }

    With no profiler installed it costs one pointer comparison: nothing is allocated and the
    name is not looked at, so a caller that has to build a name at a cost passes an empty one
    when Profiler::get() is null. A scope that ends after the profiler was removed does nothing.
*/
class ProfilerScope
{
public:
    explicit ProfilerScope (juce::StringRef name, int category = 0)
    {
        if (auto* profiler = Profiler::get())
        {
            profiler->beginEvent (name, category);
            entered = true;
        }
    }

    ~ProfilerScope()
    {
        if (entered)
            if (auto* profiler = Profiler::get())
                profiler->endEvent();
    }

    bool isEntered() const noexcept     { return entered; }

private:
    bool entered = false;

    JUCE_DECLARE_NON_COPYABLE (ProfilerScope)
};

} // namespace tov
