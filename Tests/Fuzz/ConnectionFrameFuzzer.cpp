// libFuzzer target for the reader of a connection's byte stream, which comes from any peer.
//
// The first byte of an input chooses how the rest is cut into the pieces that a socket would
// give; the rest is the stream. The reader must give the same blocks and the same end however
// the stream is cut, never hold room for more than a first piece beyond the bytes that arrived,
// and hand each block to the envelop reader, which must refuse what does not load, never crash.
// A failed property traps, so the fuzzer reports it.
#include <Tov/Core/Library.h>
#include <Tov/Message/Envelop.h>
#include <Tov/Network/FrameReader.h>
#include <Tov/Network/InterprocessConnection.h>
#include <Tov/Standard/ExecutionContext.h>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

using namespace tov;

namespace
{
    void check (bool condition)
    {
        if (! condition)
            __builtin_trap();
    }

    struct Reading
    {
        std::vector<std::string> blocks;
        FrameReader::Result result = FrameReader::Result::ok;
    };

    Reading read (const uint8_t* data, size_t size, size_t pieceSize)
    {
        Reading reading;
        FrameReader reader (InterprocessConnection::envelopMagicNumber);
        const FrameReader::BlockCallback keep = [&] (const juce::MemoryBlock& block)
        {
            reading.blocks.emplace_back (static_cast<const char*> (block.getData()), block.getSize());
        };
        for (size_t start = 0; start < size && reading.result == FrameReader::Result::ok; start += pieceSize)
        {
            reading.result = reader.read (data + start, std::min (pieceSize, size - start), keep);
            check (reader.getRoomHeld() <= std::max<size_t> (64 * 1024, 2 * size));
        }
        return reading;
    }
}

// Messages and identifiers are made by their class names: the library tree must exist.
extern "C" int LLVMFuzzerInitialize (int*, char***)
{
    initializeTov();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const size_t pieceSize = 1 + data[0] % 64;
    const auto whole = read (data + 1, size - 1, size);
    const auto cut = read (data + 1, size - 1, pieceSize);
    check (whole.blocks == cut.blocks);
    check (whole.result == cut.result);

    ExecutionContext context;
    for (auto& block : whole.blocks)
    {
        check (! block.empty());
        ObjectOwnedPointer receiver;
        if (auto* envelop = Envelop::createFromMemoryBlock (context, juce::MemoryBlock (block.data(), block.size()), receiver))
        {
            check (envelop->hasSenderIdentifier());
            envelop->deleteThis();
        }
    }
    return 0;
}
