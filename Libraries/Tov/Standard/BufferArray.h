#pragma once

#include "BufferWithLayout.h"
#include "../Container/OwnedVector.h"

namespace tov
{

/** A set of vertex-like attributes: each entry a buffer and the layout of one attribute in it.

    Interleaved, all entries share one buffer, and each element of it holds every attribute
    one after the other: appendInterleavedBufferLayout places a new attribute after the
    others and gives every entry the new element size as stride; setInterleavedBuffer then
    hands all entries the buffer.
*/
class BufferArray : public OwnedVector<BufferWithLayout>
{
public:
    TOV_DECLARE_CLASS (BufferArray, OwnedVector<BufferWithLayout>)

    /** The bytes of one element of all attributes: the sum of the layouts' sizes. */
    uint64_t getAttributeSizeInBytes() const;

    /** Appends an entry with no buffer and the layout placed after those before it, then
        makes every entry's stride the new attribute size. */
    void appendInterleavedBufferLayout (const BufferLayout& layout, bool notify = true);
    /** Every entry holds that buffer. */
    void setInterleavedBuffer (Buffer* buffer, bool notify = true);
    /** True when empty; otherwise every entry holds one and the same buffer, which is not null. */
    bool isInterleavedBuffer() const;

    /** True when there are entries and all their layouts have one component type. */
    bool hasACommonComponentType() const;
    /** The type that all layouts share; float32 without one. */
    BufferComponentTypeEnum getCommonComponentType() const;

    juce::String getClassName() const override      { return Object::getClassName(); }
};

} // namespace tov
