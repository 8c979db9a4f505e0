#pragma once

#include "VectorBuffer.h"

namespace tov
{

using Float64BufferBase = VectorBuffer<double, 1, BufferComponentTypeEnum::float64>;

/** A memory buffer of 64-bit reals, one component each. */
class Float64Buffer : public Float64BufferBase
{
public:
    TOV_DECLARE_CLASS (Float64Buffer, Float64BufferBase)
};

} // namespace tov
