#include <Tov/Core/State.h>
#include <Support/RandomTreeGenerator.h>
#include <Support/RecordingExecutionContext.h>
#include <Support/ScratchDirectory.h>
#include <gtest/gtest.h>
#include <lz4.h>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace tov;
using tov::test::ScratchDirectory;
using tov::testing::RandomTreeGenerator;
using tov::testing::forEachNode;
using tov::testing::RecordingExecutionContext;

namespace
{
std::shared_ptr<State> parseText (const char* text)
{
    RecordingExecutionContext context;
    auto state = State::createFromStateString (context, text, "test");
    EXPECT_TRUE (context.errors.empty());
    return state;
}

/** What a tree reads back as from the binary form: versions keep their low 16 bits, sign-extended. */
std::shared_ptr<State> expectedFromBinary (const State& tree)
{
    auto expected = tree.clone (UniqueIdentifier());
    forEachNode (*expected, [] (State& node) { node.setVersionNumber ((uint64_t) (int64_t) (int16_t) (node.getVersionNumber() & 0xffff)); });
    return expected;
}

/** Native pointers mean nothing outside their process: a file reads them back as void. */
std::shared_ptr<State> expectedFromFile (const State& tree)
{
    auto expected = tree.clone (UniqueIdentifier());
    forEachNode (*expected, [] (State& node)
    {
        if (node.getType() == StateType::nativePointerType)
            node.setVoid();
    });
    return expected;
}
}

TEST (StateFileTest, BinaryRoundTripOfRandomTrees)
{
    RandomTreeGenerator generator (1234);
    for (int i = 0; i < 500; ++i)
    {
        auto tree = generator.makeTree (4);
        juce::MemoryOutputStream output;
        ASSERT_TRUE (State::toBinary (tree.get(), output));
        juce::MemoryInputStream input (output.getData(), output.getDataSize(), false);
        std::shared_ptr<State> back;
        juce::String error;
        ASSERT_TRUE (State::loadFromBinary (input, back, error)) << error;
        ASSERT_TRUE (back->equals (*expectedFromBinary (*tree))) << tree->toShortString();
        ASSERT_TRUE (input.isExhausted());
    }
}

TEST (StateFileTest, FilePairRoundTripOfRandomTreesWithBuffers)
{
    ScratchDirectory scratch;
    RandomTreeGenerator generator (99);
    RecordingExecutionContext context;
    for (int i = 0; i < 200; ++i)
    {
        auto tree = generator.makeTree (4);
        const auto file = scratch.getChildFile ("document.txt");
        ASSERT_TRUE (tree->saveToFile (context, file));
        auto back = State::createFromStateFile (context, file);
        ASSERT_NE (back, nullptr);
        ASSERT_TRUE (back->equals (*expectedFromFile (*tree))) << tree->toShortString();
        scratch.getChildFile ("document.txt.bin").deleteFile();
    }
    EXPECT_TRUE (context.errors.empty());
}

TEST (StateFileTest, SiblingOnlyWhenThereAreBuffers)
{
    ScratchDirectory scratch;
    RecordingExecutionContext context;
    const auto file = scratch.getChildFile ("scene.txt");
    ASSERT_TRUE (parseText ("{a = 1, b = \"two\"}")->saveToFile (context, file));
    EXPECT_TRUE (file.existsAsFile());
    EXPECT_FALSE (scratch.getChildFile ("scene.txt.bin").exists());

    State withBuffer;
    withBuffer.addVariable ("data", std::make_shared<State> ((uint64_t) 4, (void*) "\x01\x02\x03\x04", true));
    withBuffer.addVariable ("more", std::make_shared<State> ((uint64_t) 2, (void*) "\x05\x06", true));
    ASSERT_TRUE (withBuffer.saveToFile (context, file));
    EXPECT_EQ (file.loadFileAsString(), "{data = [0 4], more = [4 2]}\n");
    juce::MemoryBlock sibling;
    ASSERT_TRUE (scratch.getChildFile ("scene.txt.bin").loadFileAsData (sibling));
    EXPECT_EQ (sibling, juce::MemoryBlock ("\x01\x02\x03\x04\x05\x06", 6));
    auto back = State::createFromStateFile (context, file);
    ASSERT_NE (back, nullptr);
    EXPECT_TRUE (back->equals (withBuffer));
    EXPECT_TRUE (context.errors.empty());
    EXPECT_EQ (scratch.getFile().findChildFiles (juce::File::findFiles, false).size(), 2);
}

TEST (StateFileTest, BufferWithoutSiblingReadsEmptyWithoutReport)
{
    ScratchDirectory scratch;
    const auto file = scratch.getChildFile ("lonely.txt");
    file.replaceWithText ("[0 4]");
    RecordingExecutionContext context;
    auto state = State::createFromStateFile (context, file);
    ASSERT_NE (state, nullptr);
    EXPECT_EQ (state->getType(), StateType::bufferType);
    EXPECT_EQ (state->getBuffer().getSize(), 0u);
    EXPECT_TRUE (context.errors.empty());
    EXPECT_TRUE (context.warnings.empty());
}

TEST (StateFileTest, DirectoriesAndMissingFiles)
{
    ScratchDirectory scratch;
    RecordingExecutionContext context;
    scratch.getChildFile ("folder").createDirectory();
    EXPECT_FALSE (State ((int64_t) 1).saveToFile (context, scratch.getChildFile ("folder")));
    EXPECT_EQ (State::createFromStateFile (context, scratch.getChildFile ("folder")), nullptr);
    EXPECT_EQ (State::createFromStateFile (context, scratch.getChildFile ("missing.txt")), nullptr);
    ASSERT_EQ (context.errors.size(), 3u);
    EXPECT_EQ (context.errors[0], "folder is a directory.");
    EXPECT_EQ (context.errors[1], "File " + scratch.getChildFile ("folder").getFullPathName() + " is a directory");
    EXPECT_EQ (context.errors[2], "File " + scratch.getChildFile ("missing.txt").getFullPathName() + " does not exist");
}

TEST (StateFileTest, TemporaryFilesDoNotCollide)
{
    ScratchDirectory scratch;
    const auto first = State::createTemporaryFileFrom ("scene.txt", scratch.getFile());
    first.create();
    const auto second = State::createTemporaryFileFrom ("scene.txt", scratch.getFile());
    EXPECT_NE (first, second);
    EXPECT_TRUE (first.getFileName().startsWith ("_temp_"));
    EXPECT_EQ (first.getFileExtension(), ".txt");
    EXPECT_EQ (first.getParentDirectory(), scratch.getFile());
}

TEST (StateFileTest, Lz4Buffers)
{
    const juce::String text = "{name = \"compressed\", values = {1, 2, 3, 4, 5, 6, 7, 8}}";
    const int size = (int) text.getNumBytesAsUTF8();
    std::vector<char> compressed ((size_t) LZ4_compressBound (size));
    const int compressedSize = LZ4_compress_default (text.toRawUTF8(), compressed.data(), size, (int) compressed.size());
    ASSERT_GT (compressedSize, 0);

    RecordingExecutionContext context;
    auto state = State::createFromStateStringLz4Buffer (context, compressed.data(), (uint64_t) compressedSize, (uint64_t) size, "lz4");
    ASSERT_NE (state, nullptr);
    EXPECT_EQ (state->toShortString(), "{name = \"compressed\", values = {1, 2, 3, 4, 5, 6, 7, 8}}");
    EXPECT_EQ (State::createFromStateStringLz4Buffer (context, compressed.data(), (uint64_t) compressedSize, (uint64_t) size + 1, "lz4"), nullptr);
    EXPECT_TRUE (context.errors.empty());

    auto string = State::createFromStringLz4Buffer (compressed.data(), (uint64_t) compressedSize, (uint64_t) size);
    ASSERT_NE (string, nullptr);
    EXPECT_EQ (string->getString(), text);

    const State buffer (compressed.data(), (uint64_t) compressedSize, (uint64_t) size);
    EXPECT_EQ (buffer.getBuffer(), RawBuffer ((uint64_t) size, text.toRawUTF8(), false));
}

// The text file alone is replaced in one step; a text and its sibling are two files,
// and a kill between their moves pairs the new text with the old sibling. So the
// documents here have no buffers.
TEST (StateFileTest, KilledSaveLeavesTheOldOrTheNewDocument)
{
    ScratchDirectory scratch;
    const auto file = scratch.getChildFile ("large.txt");
    RandomTreeGenerator generator (7);
    std::shared_ptr<State> documents[2];
    for (auto& document : documents)
    {
        document = std::make_shared<State>();
        for (int i = 0; i < 400; ++i)
            document->addVariable ("part", generator.makeTree (4));
        forEachNode (*document, [] (State& node)
        {
            if (node.getType() == StateType::bufferType)
                node.setVoid();
        });
    }
    RecordingExecutionContext context;
    ASSERT_TRUE (documents[0]->saveToFile (context, file));
    const auto expected0 = expectedFromFile (*documents[0]);
    const auto expected1 = expectedFromFile (*documents[1]);

    juce::Random random (11);
    for (int round = 0; round < 40; ++round)
    {
        const pid_t child = ::fork();
        ASSERT_GE (child, 0);
        if (child == 0)
        {
            for (int i = 0;; ++i)
                documents[i % 2]->saveToFile (context, file);
        }
        ::usleep ((useconds_t) (1000 + random.nextInt (60000)));
        ::kill (child, SIGKILL);
        int status = 0;
        ::waitpid (child, &status, 0);

        auto back = State::createFromStateFile (context, file);
        ASSERT_NE (back, nullptr) << "round " << round;
        ASSERT_TRUE (back->equals (*expected0) || back->equals (*expected1)) << "round " << round;
    }
    EXPECT_TRUE (context.errors.empty());
}
