#pragma once

#include "Buffer.h"
#include "BufferLayout.h"
#include "../Pointer/OwnedPointer.h"

namespace tov
{

/** One attribute of a BufferArray: a buffer and where the attribute lies in it. Several
    entries may hold the same buffer, each with its own offset, when their attributes are
    interleaved. */
class BufferWithLayout : public Object
{
public:
    TOV_DECLARE_CLASS (BufferWithLayout, Object)

    OwnedPointer<Buffer>& getBuffer() noexcept               { return buffer; }
    const OwnedPointer<Buffer>& getBuffer() const noexcept   { return buffer; }
    BufferLayout& getLayout() noexcept                       { return layout; }
    const BufferLayout& getLayout() const noexcept           { return layout; }

private:
    OwnedPointer<Buffer> buffer;
    BufferLayout layout;
};

} // namespace tov
