#pragma once

#include <functional>

namespace tov::test
{

/** Checks the condition on the calling thread, every millisecond, until it holds; false after
    the time-out. For conditions that nothing signals; a test waits on a signal when it has one. */
bool waitUntil (const std::function<bool()>& condition, int timeOutMilliseconds = 20000);

} // namespace tov::test
