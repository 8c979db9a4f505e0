#include "BufferLayout.h"

namespace tov
{

TOV_BEGIN_CLASS (BufferLayout)
    TOV_VARIABLE (numComponents)
    TOV_VARIABLE (componentType, { "default", "\"float32\"" })
    TOV_VARIABLE (offset)
    TOV_VARIABLE (stride)
TOV_END_CLASS()

uint64_t BufferLayout::getComponentTypeSizeInBytes (BufferComponentTypeEnum type) noexcept
{
    // Indexed by the enumeration's values, 0 to 13.
    static constexpr uint8_t sizes[] = { 1, 1, 2, 2, 4, 4, 4, 4, 4, 4, 2, 4, 8, 3 };
    const auto index = (uint32_t) type;
    return index < std::size (sizes) ? sizes[index] : 0;
}

bool BufferLayout::isRGB10A2LikeComponentType (BufferComponentTypeEnum type) noexcept
{
    return type == BufferComponentTypeEnum::int2_10_10_10 || type == BufferComponentTypeEnum::uint2_10_10_10
        || type == BufferComponentTypeEnum::int10_10_10_2 || type == BufferComponentTypeEnum::uint10_10_10_2;
}

void BufferLayout::setLayout (uint64_t newNumComponents, BufferComponentTypeEnum newComponentType,
                              uint64_t newOffset, uint64_t newStride, bool notify)
{
    setNumComponents (newNumComponents, notify);
    setComponentType (newComponentType, notify);
    setOffset (newOffset, notify);
    setStride (newStride, notify);
}

uint64_t BufferLayout::getSizeInBytes() const noexcept
{
    return getComponentTypeSizeInBytes (getComponentType()) * getNumComponents();
}

} // namespace tov
