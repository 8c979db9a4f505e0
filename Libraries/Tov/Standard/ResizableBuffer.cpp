#include "ResizableBuffer.h"

namespace tov
{

TOV_BEGIN_CLASS (ResizableBuffer)
    TOV_VARIABLE (layout)
TOV_END_CLASS()

void ResizableBuffer::copyTo (Object& target) const
{
    if (&target == this)
        return;
    if (auto* buffer = dynamic_cast<ResizableBuffer*> (&target))
        buffer->resize (getSizeInBytes(), false);
    Buffer::copyTo (target);
}

} // namespace tov
