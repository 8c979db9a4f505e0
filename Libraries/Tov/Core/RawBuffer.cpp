#include "RawBuffer.h"
#include <cstdlib>
#include <cstring>

namespace tov
{

RawBuffer::RawBuffer (uint64_t newSize, const void* newData, bool copy)
{
    setDataInternal (newSize, newData, copy);
}

RawBuffer::RawBuffer (const RawBuffer& other)
{
    setDataInternal (other.size, other.data, other.owned);
}

RawBuffer& RawBuffer::operator= (const RawBuffer& other)
{
    if (this != &other)
        setData (other.size, other.data, other.owned);
    return *this;
}

RawBuffer::~RawBuffer()
{
    reset();
}

void* RawBuffer::allocateData (uint64_t newSize)
{
    if (owned)
        reset();
    size = newSize;
    data = std::malloc (newSize > 0 ? (size_t) newSize : 1);
    owned = true;
    return data;
}

void RawBuffer::setData (uint64_t newSize, const void* newData, bool copy)
{
    if (owned)
        reset();
    setDataInternal (newSize, newData, copy);
}

void RawBuffer::setDataInternal (uint64_t newSize, const void* newData, bool copy)
{
    if (copy)
    {
        allocateData (newSize);
        if (newSize > 0)
            std::memcpy (data, newData, (size_t) newSize);
    }
    else
    {
        size = newSize;
        data = const_cast<void*> (newData);
        owned = false;
    }
}

void* RawBuffer::reallocateData (uint64_t newSize, bool clearNewBytes)
{
    if (newSize == size)
        return data;

    void* block = std::malloc (newSize > 0 ? (size_t) newSize : 1);
    const uint64_t common = std::min (size, newSize);
    if (common > 0)
        std::memcpy (block, data, (size_t) common);
    if (owned)
        std::free (data);
    if (clearNewBytes && newSize > size)
        std::memset (static_cast<char*> (block) + size, 0, (size_t) (newSize - size));

    data = block;
    size = newSize;
    owned = true;
    return data;
}

void RawBuffer::moveOwnershipTo (RawBuffer& target)
{
    if (&target == this)
        return;
    if (target.owned)
        target.reset();

    if (owned)
    {
        target.size = size;
        target.data = data;
        target.owned = true;
        owned = false;
    }
    else
    {
        target.setDataInternal (size, data, true);
    }
}

void RawBuffer::reset()
{
    if (owned)
        std::free (data);
    size = 0;
    data = nullptr;
    owned = false;
}

juce::String RawBuffer::toBase64Encoding() const
{
    return juce::MemoryBlock (data, (size_t) size).toBase64Encoding();
}

bool RawBuffer::fromBase64Encoding (const juce::String& text)
{
    juce::MemoryBlock block;
    if (! block.fromBase64Encoding (text))
        return false;
    setData (block.getSize(), block.getData(), true);
    return true;
}

bool RawBuffer::operator== (const RawBuffer& other) const noexcept
{
    return size == other.size && (size == 0 || std::memcmp (data, other.data, (size_t) size) == 0);
}

} // namespace tov
