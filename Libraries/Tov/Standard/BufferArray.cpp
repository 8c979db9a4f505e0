#include "BufferArray.h"

namespace tov
{

TOV_BEGIN_CLASS (BufferArray)
TOV_END_CLASS()

uint64_t BufferArray::getAttributeSizeInBytes() const
{
    uint64_t size = 0;
    for (auto* entry : *this)
        size += entry->getLayout().getSizeInBytes();
    return size;
}

void BufferArray::appendInterleavedBufferLayout (const BufferLayout& layout, bool notify)
{
    auto* entry = static_cast<BufferWithLayout*> (BufferWithLayout::staticClass.createObject());
    layout.copyTo (entry->getLayout());
    entry->getLayout().setOffset (getAttributeSizeInBytes(), false);
    append (entry, notify);

    const uint64_t stride = getAttributeSizeInBytes();
    for (auto* each : *this)
        each->getLayout().setStride (stride, notify);
}

void BufferArray::setInterleavedBuffer (Buffer* buffer, bool notify)
{
    for (auto* entry : *this)
        entry->getBuffer().set (buffer, notify);
}

bool BufferArray::isInterleavedBuffer() const
{
    if (size() == 0)
        return true;
    const Buffer* shared = getFirst()->getBuffer().get();
    if (shared == nullptr)
        return false;
    for (auto* entry : *this)
        if (entry->getBuffer().get() != shared)
            return false;
    return true;
}

bool BufferArray::hasACommonComponentType() const
{
    if (size() == 0)
        return false;
    const auto type = getFirst()->getLayout().getComponentType();
    for (auto* entry : *this)
        if (entry->getLayout().getComponentType() != type)
            return false;
    return true;
}

BufferComponentTypeEnum BufferArray::getCommonComponentType() const
{
    return hasACommonComponentType() ? getFirst()->getLayout().getComponentType() : BufferComponentTypeEnum::float32;
}

} // namespace tov
