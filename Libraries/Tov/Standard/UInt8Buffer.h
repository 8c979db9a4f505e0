#pragma once

#include "VectorBuffer.h"

namespace tov
{

using UInt8BufferBase = VectorBuffer<uint8_t, 1, BufferComponentTypeEnum::uint8>;

/** A memory buffer of bytes, one component each. */
class UInt8Buffer : public UInt8BufferBase
{
public:
    TOV_DECLARE_CLASS (UInt8Buffer, UInt8BufferBase)
};

} // namespace tov
