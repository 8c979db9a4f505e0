#include "FrameReader.h"
#include "../Core/LittleEndian.h"

namespace tov
{

namespace
{
    /** A block up to this size gets its whole room at once: small enough to give any peer. */
    constexpr size_t firstPieceSize = 64 * 1024;
}

FrameReader::FrameReader (juce::uint32 magic, size_t maximumSize)
    : magicNumber (magic), maximumBlockSize (maximumSize)
{
}

FrameReader::Result FrameReader::read (const void* data, size_t size, const BlockCallback& blockReceived)
{
    auto* bytes = static_cast<const juce::uint8*> (data);
    while (size > 0 && result == Result::ok)
    {
        const size_t used = headerBytes < headerSize ? readHeader (bytes, size)
                                                     : readBlock (bytes, size);
        bytes += used;
        size -= used;
        if (result == Result::ok && headerBytes == headerSize && blockBytes == blockSize)
            deliver (blockReceived);
    }
    return result;
}

size_t FrameReader::readHeader (const juce::uint8* data, size_t size)
{
    const size_t used = juce::jmin (size, headerSize - headerBytes);
    memcpy (header + headerBytes, data, used);
    headerBytes += used;
    if (headerBytes < headerSize)
        return used;

    if (juce::ByteOrder::littleEndianInt (header) != magicNumber)
        result = Result::wrongMagicNumber;
    blockSize = juce::ByteOrder::littleEndianInt (header + 4);
    if (blockSize > maximumBlockSize)
        result = Result::blockTooLarge;
    return used;
}

size_t FrameReader::readBlock (const juce::uint8* data, size_t size)
{
    const size_t used = juce::jmin (size, blockSize - blockBytes);
    makeRoomFor (used);
    memcpy (static_cast<char*> (block.getData()) + blockBytes, data, used);
    blockBytes += used;
    return used;
}

// The room doubles as bytes arrive and never passes the announced size, so that it is exactly
// the block once the last byte is in.
void FrameReader::makeRoomFor (size_t numBytes)
{
    const size_t needed = blockBytes + numBytes;
    if (needed <= block.getSize())
        return;
    const size_t room = juce::jmax (needed, juce::jmin (blockSize, juce::jmax (firstPieceSize, 2 * block.getSize())));
    block.setSize (room, false);
}

void FrameReader::deliver (const BlockCallback& blockReceived)
{
    if (blockSize > 0)
    {
        jassert (block.getSize() == blockSize);
        blockReceived (block);
    }
    block.reset();
    headerBytes = 0;
    blockSize = 0;
    blockBytes = 0;
}

void FrameReader::writeHeader (juce::uint32 magic, juce::uint32 size, void* destination) noexcept
{
    auto* bytes = static_cast<uint8_t*> (destination);
    writeLittleEndian<uint32_t> (bytes, magic);
    writeLittleEndian<uint32_t> (bytes + 4, size);
}

} // namespace tov
