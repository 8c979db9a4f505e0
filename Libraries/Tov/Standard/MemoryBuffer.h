#pragma once

#include "ResizableBuffer.h"
#include "../Core/RawBuffer.h"

namespace tov
{

/** A buffer in memory: a RawBuffer whose first getSizeInBytes() bytes are in use, the rest
    being room to grow (getCapacity).

    It saves its used bytes under the variable "buffer", after its other variables, as a
    view that is not copied; in a state file they go to the ".bin" sibling. Loading takes
    the bytes of the loaded state over without copying them.
*/
class MemoryBuffer : public ResizableBuffer
{
public:
    TOV_DECLARE_CLASS (MemoryBuffer, ResizableBuffer)

    MemoryBuffer() = default;
    MemoryBuffer (const MemoryBuffer& other) = default;
    MemoryBuffer& operator= (const MemoryBuffer& other)     { other.copyTo (*this); return *this; }

    uint64_t getSizeInBytes() const override                { return usedSize; }
    /** The bytes allocated, used or not. */
    uint64_t getCapacity() const noexcept                   { return buffer.getSize(); }

    const void* readLock() const override                   { return buffer.getData(); }
    void* readWriteLock() override                          { return buffer.getData(); }

    /** Makes room for that many bytes; never shrinks. */
    void reserve (uint64_t sizeInBytes) override;
    /** Keeps the capacity when shrinking and clears the bytes it adds; notifies when the size changes. */
    void resize (uint64_t sizeInBytes, bool notify) override;
    /** Nothing on an empty buffer; otherwise no byte is in use any more, the capacity stays. */
    void clear (bool notify) override;

    /** Adds size bytes, not cleared, at the end and returns their address. Growing takes half
        as much room again as needed, and at least 16 bytes, so that appending one element at
        a time copies the bytes a bounded number of times. */
    void* appendToBuffer (uint64_t size);

    void save (ObjectExporter& exporter) const override;
    /** "buffer" takes the bytes; "name", which old files have, is ignored. */
    bool loadVariable (ObjectImporter& importer, juce::StringRef name) override;

protected:
    void* getBytes() const noexcept                         { return buffer.getData(); }

private:
    RawBuffer buffer;
    uint64_t usedSize = 0;

    bool loadBytes (ObjectImporter& importer);
};

} // namespace tov
