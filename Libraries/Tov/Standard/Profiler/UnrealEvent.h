#pragma once

#include <cstdint>

namespace tov
{

/** An open scope of the UnrealProfiler: the id of the "EventSpec" event that names it on the trace stream
    (0 when nothing was written for it). */
using UnrealEvent = uint32_t;

} // namespace tov
