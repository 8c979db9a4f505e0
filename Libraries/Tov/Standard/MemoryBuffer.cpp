#include "MemoryBuffer.h"
#include "../Core/ObjectExporter.h"
#include "../Core/ObjectImporter.h"
#include <algorithm>
#include <cstring>

namespace tov
{

TOV_BEGIN_CLASS (MemoryBuffer)
TOV_END_CLASS()

static const char* const bytesVariableName = "buffer";

void MemoryBuffer::reserve (uint64_t sizeInBytes)
{
    if (getCapacity() < sizeInBytes)
        buffer.reallocateData (sizeInBytes, false);
}

void MemoryBuffer::resize (uint64_t sizeInBytes, bool notify)
{
    if (sizeInBytes == usedSize)
        return;
    reserve (sizeInBytes);
    if (sizeInBytes > usedSize)
        std::memset (static_cast<char*> (buffer.getData()) + usedSize, 0, (size_t) (sizeInBytes - usedSize));
    usedSize = sizeInBytes;
    if (notify)
        changed();
}

void MemoryBuffer::clear (bool notify)
{
    if (usedSize == 0)
        return;
    usedSize = 0;
    if (notify)
        changed();
}

void* MemoryBuffer::appendToBuffer (uint64_t size)
{
    const uint64_t needed = usedSize + size;
    if (getCapacity() < needed)
        buffer.reallocateData (std::max (needed + needed / 2, (uint64_t) 16), false);  // needed * 1.5, truncated
    void* added = static_cast<char*> (buffer.getData()) + usedSize;
    usedSize = needed;
    return added;
}

void MemoryBuffer::save (ObjectExporter& exporter) const
{
    ResizableBuffer::save (exporter);
    exporter.saveVariable (bytesVariableName, usedSize, buffer.getData(), ! exporter.hasFlag (exportBufferViews));
}

bool MemoryBuffer::loadVariable (ObjectImporter& importer, juce::StringRef name)
{
    if (name == juce::StringRef (bytesVariableName))
        return loadBytes (importer);
    if (name == juce::StringRef ("name"))
        return true;
    return ResizableBuffer::loadVariable (importer, name);
}

// The importer compares with, and hands its bytes to, a view of the used bytes only, so
// that the spare capacity takes no part; the bytes it hands over then become this buffer's.
bool MemoryBuffer::loadBytes (ObjectImporter& importer)
{
    RawBuffer used (usedSize, buffer.getData(), false);
    bool differs = false;
    if (! importer.readBuffer (used, differs))
        return false;
    if (differs)
    {
        used.moveOwnershipTo (buffer);
        usedSize = buffer.getSize();
        changed();
    }
    return true;
}

} // namespace tov
