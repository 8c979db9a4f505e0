#pragma once

#include "BufferComponentType.h"
#include "../Atomic/MemorySize.h"
#include "../Atomic/NameableObject.h"

namespace tov
{

/** Where one attribute lies in a buffer: numComponents components of one type, the first
    at offset bytes from the start, one element every stride bytes. */
class BufferLayout : public NameableObject
{
public:
    TOV_DECLARE_CLASS (BufferLayout, NameableObject)

    /** The bytes of one component of the type; 0 for a value that names no type. */
    static uint64_t getComponentTypeSizeInBytes (BufferComponentTypeEnum type) noexcept;
    /** True for the four types that pack a whole element into 32 bits, as RGB10A2 does. */
    static bool isRGB10A2LikeComponentType (BufferComponentTypeEnum type) noexcept;

    uint64_t getNumComponents() const noexcept                 { return (uint64_t) numComponents.get(); }
    BufferComponentTypeEnum getComponentType() const noexcept  { return componentType.getType(); }
    uint64_t getOffset() const noexcept                        { return (uint64_t) offset.get(); }
    uint64_t getStride() const noexcept                        { return (uint64_t) stride.get(); }

    void setNumComponents (uint64_t count, bool notify = true)                 { numComponents.set ((int64_t) count, notify); }
    void setComponentType (BufferComponentTypeEnum type, bool notify = true)  { componentType.setType (type, notify); }
    void setOffset (uint64_t bytes, bool notify = true)                        { offset.set ((int64_t) bytes, notify); }
    void setStride (uint64_t bytes, bool notify = true)                        { stride.set ((int64_t) bytes, notify); }
    void setLayout (uint64_t numComponents, BufferComponentTypeEnum componentType, uint64_t offset, uint64_t stride, bool notify = true);

    /** The component size times numComponents: the bytes of one element of this attribute. */
    uint64_t getSizeInBytes() const noexcept;

private:
    MemorySize numComponents { 1 };
    BufferComponentType componentType { BufferComponentType::float32 };
    MemorySize offset;
    MemorySize stride;
};

} // namespace tov
