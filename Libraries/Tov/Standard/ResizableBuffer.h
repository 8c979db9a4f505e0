#pragma once

#include "Buffer.h"
#include "BufferLayout.h"

namespace tov
{

/** A buffer whose size its owner chooses, with the layout of its elements.

    Sizes here are in bytes. reserve makes room without changing the size; resize keeps the
    bytes that stay and clears those that it adds.
*/
class ResizableBuffer : public Buffer
{
public:
    TOV_DECLARE_CLASS (ResizableBuffer, Buffer)

    BufferLayout& getLayout() noexcept                   { return layout; }
    const BufferLayout& getLayout() const noexcept       { return layout; }

    virtual void reserve (uint64_t sizeInBytes) = 0;
    virtual void resize (uint64_t sizeInBytes, bool notify) = 0;
    virtual void clear (bool notify) = 0;

    /** Takes the source's size first, then copies as a Buffer does. */
    void copyTo (Object& target) const override;

protected:
    ResizableBuffer() = default;

private:
    BufferLayout layout;
};

} // namespace tov
