#pragma once

#include "../Atomic/Enumeration.h"

namespace tov
{

/** How one component of a buffer element is stored; BufferLayout gives the sizes. The four
    "10_10_10_2" kinds pack the components of a whole element into 32 bits, as RGB10A2 does. */
enum class BufferComponentTypeEnum
{
    int8 = 0,
    uint8 = 1,
    int16 = 2,
    uint16 = 3,
    int32 = 4,
    uint32 = 5,
    int2_10_10_10 = 6,
    uint2_10_10_10 = 7,
    int10_10_10_2 = 8,
    uint10_10_10_2 = 9,
    float16 = 10,
    float32 = 11,
    float64 = 12,
    int24 = 13
};

/** The reflected form of BufferComponentTypeEnum. */
class BufferComponentType : public Enumeration
{
public:
    TOV_DECLARE_CLASS (BufferComponentType, Enumeration)
    TOV_ELEMENTS ((int8, 0), (uint8, 1), (int16, 2), (uint16, 3), (int32, 4), (uint32, 5),
                  (int2_10_10_10, 6), (uint2_10_10_10, 7), (int10_10_10_2, 8), (uint10_10_10_2, 9),
                  (float16, 10), (float32, 11), (float64, 12), (int24, 13))

    BufferComponentTypeEnum getType() const noexcept                 { return (BufferComponentTypeEnum) get(); }
    void setType (BufferComponentTypeEnum type, bool notify = true)  { set ((int32_t) type, notify); }
};

} // namespace tov
