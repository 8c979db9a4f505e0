#pragma once

#include "../Atomic/Enumeration.h"

namespace tov
{

/** Where a task stands in its life. */
enum class TaskStateEnum
{
    uninitialized = 0,
    running = 1,
    canceled = 2,
    terminated = 3
};

/** The reflected form of TaskStateEnum. */
class TaskState : public Enumeration
{
public:
    TOV_DECLARE_CLASS (TaskState, Enumeration)
    TOV_ELEMENTS ((uninitialized, 0), (running, 1), (canceled, 2), (terminated, 3))

    TaskStateEnum getState() const noexcept                { return (TaskStateEnum) get(); }
    void setState (TaskStateEnum state, bool notify)       { set ((int32_t) state, notify); }
    bool is (TaskStateEnum state) const noexcept           { return getState() == state; }
};

} // namespace tov
