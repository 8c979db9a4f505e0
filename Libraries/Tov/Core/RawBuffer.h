#pragma once

#include <juce_core/juce_core.h>
#include <cstdint>

namespace tov
{

/** A block of bytes that is either owned or a view on memory kept alive elsewhere.

    A copy of an owning buffer owns a copy of the bytes; a copy of a view is a view.
*/
class RawBuffer
{
public:
    RawBuffer() noexcept = default;
    RawBuffer (uint64_t size, const void* data, bool copy);
    RawBuffer (const RawBuffer& other);
    RawBuffer& operator= (const RawBuffer& other);
    ~RawBuffer();

    void* getData() const noexcept      { return data; }
    uint64_t getSize() const noexcept   { return size; }
    bool isDataOwned() const noexcept   { return owned; }

    /** Allocates size bytes, which are not cleared. */
    void* allocateData (uint64_t newSize);

    /** With copy, owns a copy of the bytes; otherwise becomes a view on them. */
    void setData (uint64_t newSize, const void* newData, bool copy);

    /** Resizes into a new owned block, keeping the common bytes; a view's memory is left alone. */
    void* reallocateData (uint64_t newSize, bool clearNewBytes);

    /** An owning buffer hands its block to the target and stays a view on it; a view gives an owned copy. */
    void moveOwnershipTo (RawBuffer& target);

    /** Frees owned data and leaves an empty view. */
    void reset();

    juce::String toBase64Encoding() const;

    /** On success owns a copy of the decoded bytes; on failure nothing changes. */
    bool fromBase64Encoding (const juce::String& text);

    bool operator== (const RawBuffer& other) const noexcept;
    bool operator!= (const RawBuffer& other) const noexcept { return ! operator== (other); }

private:
    uint64_t size = 0;
    void* data = nullptr;
    bool owned = false;

    void setDataInternal (uint64_t newSize, const void* newData, bool copy);
};

} // namespace tov
