#pragma once

#include "../Core/Object.h"

namespace tov
{

/** A reflected block of bytes that may live elsewhere (in graphics memory, say): its bytes
    are reached only between a lock and the matching unlock.

        if (auto* bytes = buffer.readLock())
        {
            use (bytes, buffer.getSizeInBytes());
            buffer.unlockRead (bytes);
        }

    MemoryBuffer keeps its bytes in memory; an application derives from Buffer for memory
    it does not own, and names such memory with getNativeIdentifier. Edits through the locks
    do not notify: call changed() once the bytes are written.
*/
class Buffer : public Object
{
public:
    TOV_DECLARE_CLASS (Buffer, Object)

    virtual uint64_t getSizeInBytes() const = 0;

    virtual const void* readLock() const = 0;
    virtual bool unlockRead (const void* data) const    { return true; }
    virtual void* readWriteLock() = 0;
    virtual bool unlockReadWrite (void* data)           { return true; }
    virtual void* writeLock()                           { return readWriteLock(); }
    virtual bool unlockWrite (void* data)               { return unlockReadWrite (data); }
    /** The handle by which the memory's owner knows it; 0 for plain memory. */
    virtual int getNativeIdentifier() const             { return 0; }

    /** The same bytes: true for itself and for two empty buffers, false for other sizes. */
    virtual bool equalsBuffer (const Buffer& other) const;
    /** Copies size bytes from sourceOffset of this buffer to targetOffset of the target, and
        with notify calls changed() on the target. A range that does not fit in either buffer
        copies nothing; ranges of one buffer may overlap. */
    virtual void copySubBufferTo (Buffer& target, uint64_t sourceOffset, uint64_t targetOffset, uint64_t size, bool notify) const;
    /** All of this buffer to the start of the target; nothing onto itself. */
    void copyBufferTo (Buffer& target, bool notify) const;

    bool isEmpty() const                                { return getSizeInBytes() == 0; }

    /** The variables, then the bytes, with notification. */
    void copyTo (Object& target) const override;
    /** The same variables and the same bytes. */
    bool equalsSameClass (const Object& other) const override;
    /** Its size, as "1.5 MB". */
    juce::String toString() const override;

protected:
    Buffer() = default;
};

} // namespace tov
