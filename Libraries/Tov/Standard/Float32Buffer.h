#pragma once

#include "VectorBuffer.h"

namespace tov
{

using Float32BufferBase = VectorBuffer<float, 1, BufferComponentTypeEnum::float32>;

/** A memory buffer of 32-bit reals, one component each. */
class Float32Buffer : public Float32BufferBase
{
public:
    TOV_DECLARE_CLASS (Float32Buffer, Float32BufferBase)
};

} // namespace tov
