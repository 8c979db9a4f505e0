#pragma once

#include "VectorBuffer.h"

namespace tov
{

using Int32BufferBase = VectorBuffer<int32_t, 1, BufferComponentTypeEnum::int32>;

/** A memory buffer of signed 32-bit integers, one component each. */
class Int32Buffer : public Int32BufferBase
{
public:
    TOV_DECLARE_CLASS (Int32Buffer, Int32BufferBase)
};

} // namespace tov
