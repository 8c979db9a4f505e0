#include "Buffer.h"
#include "../Atomic/MemorySize.h"
#include <cstring>

namespace tov
{

TOV_BEGIN_CLASS (Buffer)
TOV_END_CLASS()

bool Buffer::equalsBuffer (const Buffer& other) const
{
    if (&other == this)
        return true;
    const uint64_t size = getSizeInBytes();
    if (size != other.getSizeInBytes())
        return false;
    if (size == 0)
        return true;

    const void* mine = readLock();
    const void* theirs = other.readLock();
    const bool equal = mine != nullptr && theirs != nullptr && std::memcmp (mine, theirs, (size_t) size) == 0;
    other.unlockRead (theirs);
    unlockRead (mine);
    return equal;
}

static bool fits (uint64_t offset, uint64_t size, uint64_t bufferSize) noexcept
{
    return offset <= bufferSize && size <= bufferSize - offset;
}

void Buffer::copySubBufferTo (Buffer& target, uint64_t sourceOffset, uint64_t targetOffset, uint64_t size, bool notify) const
{
    if (size == 0 || ! fits (sourceOffset, size, getSizeInBytes()) || ! fits (targetOffset, size, target.getSizeInBytes()))
        return;

    const void* source = readLock();
    void* destination = target.writeLock();
    // memmove: a copy inside one buffer may overlap.
    if (source != nullptr && destination != nullptr)
        std::memmove (static_cast<char*> (destination) + targetOffset, static_cast<const char*> (source) + sourceOffset, (size_t) size);
    target.unlockWrite (destination);
    unlockRead (source);
    if (notify)
        target.changed();
}

void Buffer::copyBufferTo (Buffer& target, bool notify) const
{
    if (&target != this)
        copySubBufferTo (target, 0, 0, getSizeInBytes(), notify);
}

void Buffer::copyTo (Object& target) const
{
    Object::copyTo (target);
    if (auto* buffer = dynamic_cast<Buffer*> (&target))
        copyBufferTo (*buffer, true);
}

bool Buffer::equalsSameClass (const Object& other) const
{
    return Object::equalsSameClass (other) && equalsBuffer (static_cast<const Buffer&> (other));
}

juce::String Buffer::toString() const
{
    return MemorySize::toScaledString ((int64_t) getSizeInBytes());
}

} // namespace tov
