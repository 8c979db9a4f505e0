#pragma once

#include "LinearProbingTable.h"

namespace tov
{

class Object;

/** A map from object addresses to values, for tables that are asked once per change: see
    LinearProbingTable. The null address never enters. */
template <class Value>
using ObjectPointerMap = LinearProbingTable<const Object*, Value>;

} // namespace tov
