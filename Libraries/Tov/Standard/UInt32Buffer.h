#pragma once

#include "VectorBuffer.h"

namespace tov
{

using UInt32BufferBase = VectorBuffer<uint32_t, 1, BufferComponentTypeEnum::uint32>;

/** A memory buffer of unsigned 32-bit integers, one component each. */
class UInt32Buffer : public UInt32BufferBase
{
public:
    TOV_DECLARE_CLASS (UInt32Buffer, UInt32BufferBase)
};

} // namespace tov
