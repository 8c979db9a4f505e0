// libFuzzer target for state files: a text and its ".bin" sibling.
//
// An input with a zero byte is the text and, after the zero, the sibling's
// bytes; any other input is a text without sibling. Both are written to a
// scratch directory and read with createFromStateFile. A tree that reads is
// saved and read back; after that first pass (which may round reals and cut
// versions), saving and reading change nothing.
#include <Tov/Core/State.h>
#include <Tov/Standard/ExecutionContext.h>
#include <cstddef>
#include <cstdint>
#include <cstring>

using namespace tov;

namespace
{
    void check (bool condition)
    {
        if (! condition)
            __builtin_trap();
    }

    const juce::File& getScratchDirectory()
    {
        static const juce::File directory = []
        {
            auto folder = juce::File::getSpecialLocation (juce::File::tempDirectory)
                              .getChildFile ("tovStateFileFuzzer_" + juce::String (juce::Time::currentTimeMillis()));
            folder.createDirectory();
            return folder;
        }();
        return directory;
    }
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    const auto file = getScratchDirectory().getChildFile ("document.txt");
    const auto sibling = getScratchDirectory().getChildFile ("document.txt.bin");
    sibling.deleteFile();

    if (auto* zero = static_cast<const uint8_t*> (std::memchr (data, 0, size)))
    {
        const auto textSize = (size_t) (zero - data);
        file.replaceWithData (data, textSize);
        sibling.replaceWithData (zero + 1, size - textSize - 1);
    }
    else
    {
        file.replaceWithData (data, size);
    }

    ExecutionContext context;
    auto state = State::createFromStateFile (context, file);
    if (state == nullptr)
        return 0;

    check (state->saveToFile (context, file));
    auto once = State::createFromStateFile (context, file);
    if (once == nullptr)
        return 0;
    check (once->saveToFile (context, file));
    auto twice = State::createFromStateFile (context, file);
    check (twice != nullptr);
    check (twice->saveToString() == once->saveToString());
    return 0;
}
