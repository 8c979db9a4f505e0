#pragma once

#include <juce_core/juce_core.h>
#include <functional>

namespace tov
{

/** Cuts the byte stream of a connection into the blocks it carries. Each block travels as a frame:

        offset 0   4 bytes   magic number, little-endian
        offset 4   4 bytes   size of the block in bytes, little-endian
        offset 8   size      the block

    The bytes come in pieces of any length, as the socket gives them. A block is handed on
    once all its bytes are there: a frame cut short is never delivered. Room for a block grows
    with the bytes that arrive, never ahead of them by more than a small first piece, so that a
    peer announcing a huge block makes nobody allocate it. A wrong magic number or a size above
    the limit cannot be resynchronised: the reader stops, and the connection must close.
    Blocks of size 0 carry nothing and are skipped.
*/
class FrameReader
{
public:
    enum class Result
    {
        ok,
        wrongMagicNumber,
        blockTooLarge
    };

    using BlockCallback = std::function<void (const juce::MemoryBlock&)>;

    static constexpr size_t headerSize = 8;
    /** The largest block read: larger sizes are taken for a broken or hostile peer. */
    static constexpr size_t defaultMaximumBlockSize = (size_t) 256 * 1024 * 1024;

    explicit FrameReader (juce::uint32 magicNumber, size_t maximumBlockSize = defaultMaximumBlockSize);

    /** Reads the bytes, handing each completed block to the callback in order. After a result
        other than ok, nothing more is read. */
    Result read (const void* data, size_t size, const BlockCallback& blockReceived);

    /** Some bytes of an unfinished frame are held. */
    bool isInsideFrame() const noexcept             { return headerBytes > 0; }
    /** The bytes set aside for the block being read. */
    size_t getRoomHeld() const noexcept             { return block.getSize(); }

    /** The header of a frame of that block size, ready to be written before the block. */
    static void writeHeader (juce::uint32 magicNumber, juce::uint32 blockSize, void* destination) noexcept;

private:
    const juce::uint32 magicNumber;
    const size_t maximumBlockSize;
    Result result = Result::ok;

    juce::uint8 header[headerSize] = {};
    size_t headerBytes = 0;
    size_t blockSize = 0;
    juce::MemoryBlock block;
    size_t blockBytes = 0;

    size_t readHeader (const juce::uint8* data, size_t size);
    size_t readBlock (const juce::uint8* data, size_t size);
    void makeRoomFor (size_t numBytes);
    void deliver (const BlockCallback& blockReceived);
};

} // namespace tov
