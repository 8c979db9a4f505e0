// State files: the text form in the file, buffer bytes in a ".bin" sibling,
// written through temporary files and moved into place; and the LZ4 entry points.
#include "State.h"
#include "../Standard/ExecutionContext.h"
#include <lz4.h>
#include <cstdio>

namespace tov
{

static constexpr size_t fileBufferSize = 32768;

static juce::File getSibling (const juce::File& file)
{
    return file.getSiblingFile (file.getFileName() + ".bin");
}

// juce::File::moveFileTo deletes the target before it moves, which leaves a moment
// without any document. rename() replaces the target in one step; across file
// systems, where it cannot, the copying move is the fallback.
static bool replaceFile (const juce::File& source, const juce::File& target)
{
    if (::rename (source.getFullPathName().toRawUTF8(), target.getFullPathName().toRawUTF8()) == 0)
        return true;
    return source.moveFileTo (target);
}

juce::File State::createTemporaryFileFrom (const juce::String& fileName, const juce::File& directory)
{
    if (directory == juce::File())
        return juce::File::createTempFile (fileName);
    for (;;)
    {
        const auto candidate = directory.getChildFile ("_temp_" + juce::String::toHexString ((int) juce::Random::getSystemRandom().nextInt()))
                                        .withFileExtension (fileName);
        if (! candidate.exists())
            return candidate;
    }
}

// The target is touched only by the final moves, so a crash while printing
// leaves the former document whole. Without a temporary directory the
// temporaries stand beside the target: a move within one file system is a
// rename, which no crash can leave half done.
bool State::saveToFile (ExecutionContext& context, const juce::File& file, const juce::File& temporaryDirectory) const
{
    const auto sibling = getSibling (file);
    const auto directory = temporaryDirectory != juce::File() ? temporaryDirectory : file.getParentDirectory();
    const auto textTemporary = createTemporaryFileFrom (file.getFileName(), directory);
    const auto binaryTemporary = createTemporaryFileFrom (sibling.getFileName(), directory);

    if (file.isDirectory())
    {
        context.error (file.getFileName() + " is a directory.");
        return false;
    }

    {
        auto text = std::make_unique<juce::FileOutputStream> (textTemporary, fileBufferSize);
        auto binary = std::make_unique<juce::FileOutputStream> (binaryTemporary, fileBufferSize);
        for (auto [stream, kind] : { std::pair<juce::FileOutputStream*, const char*> { text.get(), "" }, { binary.get(), "binary " } })
            if (stream->failedToOpen())
            {
                context.error ("Could not create " + juce::String (kind) + " output stream for file " + file.getFileName());
                return false;
            }
        text->setPosition (0);
        text->truncate();
        binary->setPosition (0);
        binary->truncate();
        print (*text, *binary);
        text->flush();
        binary->flush();
    }

    if (! replaceFile (textTemporary, file))
    {
        context.error ("Could not overwrite file " + file.getFileName());
        return false;
    }
    if (binaryTemporary.getSize() == 0)
    {
        binaryTemporary.deleteFile();
        return true;
    }
    if (! replaceFile (binaryTemporary, sibling))
    {
        context.error ("Could not overwrite file " + sibling.getFileName());
        return false;
    }
    return true;
}

std::shared_ptr<State> State::createFromStateFile (ExecutionContext& context, const juce::File& file, StateParserCallback* callback)
{
    const auto path = file.getFullPathName();
    if (file.isDirectory())
    {
        context.error ("File " + path + " is a directory");
        return nullptr;
    }
    if (! file.exists())
    {
        context.error ("File " + path + " does not exist");
        return nullptr;
    }

    const auto sibling = getSibling (file);
    juce::FileInputStream text (file);
    if (text.failedToOpen())
    {
        context.error ("File " + file.getFileName() + " cannot be opened for reading");
        return nullptr;
    }
    if (! sibling.exists())
        return parse (context, text, path, callback);

    juce::FileInputStream binary (sibling);
    if (binary.failedToOpen())
    {
        context.error ("File " + sibling.getFileName() + " cannot be opened for reading");
        return nullptr;
    }
    return parse (context, text, binary, path, callback);
}

//==============================================================================
static bool decompressLz4 (const void* data, uint64_t compressedSize, uint64_t uncompressedSize, juce::MemoryBlock& out)
{
    out.setSize ((size_t) uncompressedSize);
    const int result = LZ4_decompress_safe (static_cast<const char*> (data), static_cast<char*> (out.getData()),
                                            (int) (uint32_t) compressedSize, (int) (uint32_t) uncompressedSize);
    return result >= 0 && (uint64_t) result == uncompressedSize;
}

std::shared_ptr<State> State::createFromStateStringLz4Buffer (ExecutionContext& context, const void* data, uint64_t compressedSize,
                                                              uint64_t uncompressedSize, const juce::String& source,
                                                              StateParserCallback* callback)
{
    juce::MemoryBlock text;
    if (! decompressLz4 (data, compressedSize, uncompressedSize, text))
        return nullptr;
    return createFromStateStringBuffer (context, text.getData(), text.getSize(), source, callback);
}

std::shared_ptr<State> State::createFromStringLz4Buffer (const void* data, uint64_t compressedSize, uint64_t uncompressedSize)
{
    juce::MemoryBlock text;
    if (! decompressLz4 (data, compressedSize, uncompressedSize, text))
        return nullptr;
    return std::make_shared<State> (juce::String::fromUTF8 (static_cast<const char*> (text.getData()), (int) text.getSize()));
}

} // namespace tov
