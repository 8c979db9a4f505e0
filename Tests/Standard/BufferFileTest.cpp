#include "Atomic/AtomicTestSupport.h"
#include "BufferTestSupport.h"
#include "Support/RecordingExecutionContext.h"
#include "Support/ScratchDirectory.h"
#include <Tov/Core/ObjectExporter.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Standard/BufferArray.h>
#include <Tov/Standard/Float32Buffer.h>
#include <Tov/Standard/Int32Buffer.h>
#include <Tov/Standard/UInt8Buffer.h>
#include <lz4.h>
#include <vector>

using namespace tov;
using namespace tov::test;
using tov::testing::RecordingExecutionContext;

namespace
{

std::vector<uint8_t> bytesOfFile (const juce::File& file)
{
    juce::MemoryBlock block;
    file.loadFileAsData (block);
    auto* data = static_cast<const uint8_t*> (block.getData());
    return { data, data + block.getSize() };
}

/** A fresh directory for the files of one test, removed afterwards. */
class BufferFileTest : public ::testing::Test
{
protected:
    ScratchDirectory directory;
    juce::File file = directory.getChildFile ("document.txt");
    juce::File sibling = directory.getChildFile ("document.txt.bin");

    static Owned<BufferArray> makeArray()
    {
        auto array = createOwned<BufferArray>();
        auto* positions = create<Float32Buffer>();
        for (float value : { 1.0f, 2.0f, 3.0f })
            positions->append (value);
        auto* indices = create<Int32Buffer>();
        indices->append (-7);
        for (auto* buffer : std::initializer_list<Buffer*> { positions, indices })
        {
            auto* entry = create<BufferWithLayout>();
            entry->getBuffer().set (buffer, false);
            array->append (entry, false);
        }
        array->get (1)->getLayout().setLayout (1, BufferComponentTypeEnum::int32, 0, 4, false);
        return array;
    }
};

/** The state of a MemoryBuffer whose "buffer" variable is the given state. */
std::shared_ptr<State> stateWithBytes (const std::shared_ptr<State>& bytes)
{
    auto state = std::make_shared<State>();
    state->addVariable ("buffer", bytes);
    return state;
}
} // namespace

//==============================================================================
TEST (BufferSaveTest, SavesOnlyTheUsedBytesAfterTheVariables)
{
    UInt8Buffer buffer;
    *static_cast<uint8_t*> (buffer.appendToBuffer (1)) = 42;
    ASSERT_EQ (buffer.getCapacity(), 16u);
    auto state = StateObjectExporter::make (buffer, exportBufferViews, false);
    ASSERT_EQ (state->getNumVariables(), 2u);
    EXPECT_EQ (state->getVariableName (0), "layout");
    EXPECT_EQ (state->getVariableName (1), "buffer");
    const auto& saved = state->getVariableStateRef (1).getBuffer();
    EXPECT_EQ (saved.getSize(), 1u);
    EXPECT_FALSE (saved.isDataOwned());
    EXPECT_EQ (saved.getData(), buffer.readLock());

    juce::MemoryOutputStream text, binary;
    state->print (text, binary);
    EXPECT_EQ (text.toString(), "{layout = {name = \"\", numComponents = 1, componentType = \"uint8\", offset = 0, stride = 1}, buffer = [0 1]}\n");
    EXPECT_EQ (binary.getDataSize(), 1u);
}

TEST (BufferSaveTest, ASnapshotKeepsACopyOfTheBytesThatOutlivesAResize)
{
    UInt8Buffer buffer;
    *static_cast<uint8_t*> (buffer.appendToBuffer (1)) = 42;
    const auto snapshot = buffer.makeState (false, false);
    const auto& saved = snapshot->getVariableStateRef (1).getBuffer();
    EXPECT_TRUE (saved.isDataOwned());
    EXPECT_NE (saved.getData(), buffer.readLock());

    // Growing moves the bytes to a new block and frees the old one; the snapshot still reads 42.
    buffer.resize (4096);
    ASSERT_EQ (saved.getSize(), 1u);
    EXPECT_EQ (*static_cast<const uint8_t*> (saved.getData()), 42);
    UInt8Buffer restored;
    RecordingExecutionContext context;
    ASSERT_TRUE (restored.loadFromState (context, snapshot));
    EXPECT_EQ (restored.size(), 1);
    EXPECT_EQ (restored[0], 42);
}

TEST (BufferSaveTest, WithoutDefaultsATypedBufferSavesItsBytesAlone)
{
    // Its layout is the default that its class declares for it.
    auto buffer = createOwned<Float32Buffer>();
    buffer->append (0.5f);
    EXPECT_EQ (buffer->makeState (true, true)->saveToString(), "'Float32Buffer {buffer = [0 4]}\n");
    // A member equal to its default is left out whole.
    Float32Buffer empty;
    EXPECT_EQ (empty.makeState (true, false)->saveToString(), "void\n");
    auto heapEmpty = createOwned<Float32Buffer>();
    EXPECT_EQ (heapEmpty->makeState (true, false)->saveToString(), "{buffer = [0 0]}\n");
}

TEST (BufferSaveTest, Base64RoundTrip)
{
    UInt8Buffer source, target;
    for (uint8_t value : { 1, 2, 255 })
        source.append (value);
    auto state = StateObjectExporter::make (source, exportBuffersAsBase64, false);
    EXPECT_EQ (state->getVariableStateByName ("buffer")->toString(), "\"3.AHv+\"");
    EXPECT_TRUE (saveAndLoad (source, target, exportBuffersAsBase64).messages.isEmpty());
    EXPECT_EQ (bytesOf (target), (std::vector<uint8_t> { 1, 2, 255 }));
}

//==============================================================================
TEST (BufferLoadTest, TakesTheBytesOfTheStateWithoutCopyingAndNotifiesOnce)
{
    RecordingExecutionContext context;
    auto state = stateWithBytes (std::make_shared<State> ((uint64_t) 3, (void*) "abc", true));
    const void* bytes = state->getVariableStateRef (0).getBuffer().getData();
    UInt8Buffer buffer;
    ChangeCounter counter (buffer);
    EXPECT_TRUE (buffer.loadFromState (context, state));
    EXPECT_EQ (buffer.readLock(), bytes);
    EXPECT_EQ (buffer.getSizeInBytes(), 3u);
    EXPECT_EQ (buffer.getCapacity(), 3u);
    EXPECT_EQ (counter.count, 1);
    EXPECT_FALSE (state->getVariableStateRef (0).getBuffer().isDataOwned());
    EXPECT_TRUE (context.errors.empty());
}

TEST (BufferLoadTest, EqualBytesChangeNothingAndSpareCapacityTakesNoPart)
{
    RecordingExecutionContext context;
    UInt8Buffer buffer;
    buffer.append ('a');
    ASSERT_EQ (buffer.getCapacity(), 16u);
    const void* block = buffer.readLock();
    ChangeCounter counter (buffer);
    EXPECT_TRUE (buffer.loadFromState (context, stateWithBytes (std::make_shared<State> ((uint64_t) 1, (void*) "a", true))));
    EXPECT_EQ (counter.count, 0);
    EXPECT_EQ (buffer.readLock(), block);
    EXPECT_EQ (buffer.getCapacity(), 16u);
}

TEST (BufferLoadTest, NameOfOldFilesIsIgnoredAndOtherUnknownsWarn)
{
    RecordingExecutionContext context;
    auto state = stateWithBytes (std::make_shared<State> ((uint64_t) 1, (void*) "z", true));
    state->addVariable ("name", std::make_shared<State> ("old"));
    MemoryBuffer buffer;
    EXPECT_TRUE (buffer.loadFromState (context, state));
    EXPECT_TRUE (context.warnings.empty());
    state->addVariable ("colour", std::make_shared<State> ("red"));
    EXPECT_TRUE (buffer.loadFromState (context, state));
    EXPECT_EQ (context.warnings, (std::vector<juce::String> { "Unknown variable colour in MemoryBuffer (in ObjectImporter::sendUnknownVariableWarning)" }));
}

TEST (BufferLoadTest, AWrongTypeIsReportedAndLeavesTheBytes)
{
    RecordingExecutionContext context;
    UInt8Buffer buffer;
    buffer.append (9);
    EXPECT_FALSE (buffer.loadFromState (context, stateWithBytes (std::make_shared<State> ((int64_t) 5))));
    EXPECT_EQ (context.errors, (std::vector<juce::String> {
        "Wrong type: expected string or buffer, found integer (in 5) (in ObjectImporter::readBuffer)" }));
    EXPECT_EQ (bytesOf (buffer), (std::vector<uint8_t> { 9 }));
}

TEST (BufferLoadTest, BadBase64IsReportedAndLeavesTheBytes)
{
    RecordingExecutionContext context;
    UInt8Buffer buffer;
    buffer.append (9);
    EXPECT_FALSE (buffer.loadFromState (context, stateWithBytes (std::make_shared<State> ("#not base64#"))));
    EXPECT_EQ (context.errors, (std::vector<juce::String> {
        "bad base64 format (in \"#not base64#\") (in ObjectImporter::readBuffer)" }));
    EXPECT_EQ (bytesOf (buffer), (std::vector<uint8_t> { 9 }));
}

TEST (BufferLoadTest, ACompressedBufferIsReadBack)
{
    std::vector<uint8_t> original (1000);
    for (size_t i = 0; i < original.size(); ++i)
        original[i] = (uint8_t) (i % 7);
    std::vector<char> compressed ((size_t) LZ4_compressBound ((int) original.size()));
    const int compressedSize = LZ4_compress_default ((const char*) original.data(), compressed.data(), (int) original.size(), (int) compressed.size());
    ASSERT_GT (compressedSize, 0);

    RecordingExecutionContext context;
    UInt8Buffer buffer;
    EXPECT_TRUE (buffer.loadFromState (context, stateWithBytes (std::make_shared<State> (compressed.data(), (uint64_t) compressedSize, (uint64_t) original.size()))));
    EXPECT_EQ (bytesOf (buffer), original);
    EXPECT_TRUE (context.errors.empty());
}

TEST (BufferLoadTest, BytesThatAreNoWholeNumberOfElementsAreKept)
{
    RecordingExecutionContext context;
    Float32Buffer buffer;
    EXPECT_TRUE (buffer.loadFromState (context, stateWithBytes (std::make_shared<State> ((uint64_t) 6, (void*) "123456", true))));
    EXPECT_EQ (buffer.getSizeInBytes(), 6u);
    EXPECT_EQ (buffer.size(), 1);
    buffer.append (1.0f);
    EXPECT_EQ (buffer.getSizeInBytes(), 10u);
}

TEST (BufferLoadTest, ATruncatedBinaryStreamFails)
{
    Float32Buffer source;
    source.append (1.0f);
    source.append (2.0f);
    juce::MemoryOutputStream stream;
    ASSERT_TRUE (source.makeState (true, true)->toBinary (stream));
    juce::MemoryInputStream truncated (stream.getData(), stream.getDataSize() - 3, false);
    State state;
    juce::String error;
    EXPECT_FALSE (state.loadFromBinary (truncated, error));
    EXPECT_EQ (error, "Unexpected end of stream, truncated buffer");
}

//==============================================================================
TEST_F (BufferFileTest, SavesBytesToTheSiblingAndLoadsThemBack)
{
    auto source = createOwned<Float32Buffer>();
    for (float value : { 0.25f, -8.0f })
        source->append (value);
    RecordingExecutionContext context;
    ASSERT_TRUE (source->saveToFile (context, file, true));
    EXPECT_EQ (file.loadFileAsString(), "'Float32Buffer {buffer = [0 8]}\n");
    EXPECT_EQ (sibling.getSize(), 8);

    Float32Buffer target;
    EXPECT_TRUE (target.loadFromFile (context, file));
    EXPECT_EQ (target.size(), 2);
    EXPECT_EQ (target[0], 0.25f);
    EXPECT_EQ (target[1], -8.0f);
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (BufferFileTest, AnEmptyBufferLeavesNoSibling)
{
    RecordingExecutionContext context;
    auto empty = createOwned<UInt8Buffer>();
    ASSERT_TRUE (empty->saveToFile (context, file, false));
    EXPECT_EQ (file.loadFileAsString(), "{buffer = [0 0]}\n");
    EXPECT_FALSE (sibling.exists());
    UInt8Buffer target;
    target.append (3);
    EXPECT_TRUE (target.loadFromFile (context, file));
    EXPECT_TRUE (target.isEmpty());
}

TEST_F (BufferFileTest, ATruncatedSiblingGivesAnEmptyBufferWithoutAReport)
{
    UInt8Buffer source;
    for (int i = 0; i < 10; ++i)
        source.append ((uint8_t) i);
    RecordingExecutionContext context;
    ASSERT_TRUE (source.saveToFile (context, file, false));
    ASSERT_TRUE (sibling.replaceWithData ("\0\1\2", 3));

    UInt8Buffer target;
    target.append (77);
    EXPECT_TRUE (target.loadFromFile (context, file));
    EXPECT_TRUE (target.isEmpty());
    EXPECT_TRUE (context.errors.empty());
    EXPECT_TRUE (context.warnings.empty());
}

TEST_F (BufferFileTest, SizesBeyondTheSiblingGiveEmptyBuffersWithoutAReport)
{
    ASSERT_TRUE (sibling.replaceWithData ("abcd", 4));
    RecordingExecutionContext context;
    for (auto* text : { "{buffer = [2 3]}", "{buffer = [0 1000000000000]}", "{buffer = [5 0]}", "{buffer = [18446744073709551615 2]}" })
    {
        ASSERT_TRUE (file.replaceWithText (text));
        UInt8Buffer target;
        target.append (1);
        EXPECT_TRUE (target.loadFromFile (context, file)) << text;
        EXPECT_TRUE (target.isEmpty()) << text;
    }
    ASSERT_TRUE (file.replaceWithText ("{buffer = [1 2]}"));
    UInt8Buffer target;
    EXPECT_TRUE (target.loadFromFile (context, file));
    EXPECT_EQ (bytesOf (target), (std::vector<uint8_t> { 'b', 'c' }));
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (BufferFileTest, ANegativeSizeIsNoValue)
{
    ASSERT_TRUE (file.replaceWithText ("{buffer = [0 -4]}"));
    RecordingExecutionContext context;
    UInt8Buffer target;
    EXPECT_FALSE (target.loadFromFile (context, file));
    ASSERT_EQ (context.errors.size(), 1u);
    EXPECT_EQ (context.errors[0], "Stream: " + file.getFullPathName() + "\nLine: 0\nColumn: 9\nEntire line in question: {buffer =[*Here*]  [0 -4]}\n"
                                  " => Expected a value.");
}

TEST_F (BufferFileTest, ASiblingLeftByAnEarlierSaveIsNotReadForAnEmptyBuffer)
{
    auto source = createOwned<UInt8Buffer>();
    source->append (1);
    RecordingExecutionContext context;
    ASSERT_TRUE (source->saveToFile (context, file, false));
    source->clear (false);
    ASSERT_TRUE (source->saveToFile (context, file, false));
    EXPECT_EQ (sibling.getSize(), 1);
    EXPECT_EQ (file.loadFileAsString(), "{buffer = [0 0]}\n");
    UInt8Buffer target;
    target.append (5);
    EXPECT_TRUE (target.loadFromFile (context, file));
    EXPECT_TRUE (target.isEmpty());
    EXPECT_TRUE (context.errors.empty());
}

TEST_F (BufferFileTest, AnArrayOfBuffersKeepsItsClassesAndBytes)
{
    auto array = makeArray();
    RecordingExecutionContext context;
    ASSERT_TRUE (array->saveToFile (context, file, true));
    EXPECT_EQ (sibling.getSize(), 16);
    EXPECT_EQ (bytesOfFile (sibling), (std::vector<uint8_t> { 0, 0, 0x80, 0x3f, 0, 0, 0, 0x40, 0, 0, 0x40, 0x40, 0xf9, 0xff, 0xff, 0xff }));

    auto loaded = Owned<BufferArray> (create<BufferArray>());
    EXPECT_TRUE (loaded->loadFromFile (context, file));
    ASSERT_EQ (loaded->size(), 2u);
    auto* positions = dynamic_cast<Float32Buffer*> (loaded->get (0)->getBuffer().get());
    auto* indices = dynamic_cast<Int32Buffer*> (loaded->get (1)->getBuffer().get());
    ASSERT_NE (positions, nullptr);
    ASSERT_NE (indices, nullptr);
    EXPECT_EQ (positions->size(), 3);
    EXPECT_EQ ((*positions)[2], 3.0f);
    EXPECT_EQ (indices->get (0), -7);
    EXPECT_EQ (loaded->get (1)->getLayout().getComponentType(), BufferComponentTypeEnum::int32);
    // Owned pointers are equal only when they hold the same object.
    EXPECT_FALSE (loaded->equals (*array));
    EXPECT_TRUE (positions->equals (*array->get (0)->getBuffer()));
    EXPECT_TRUE (context.errors.empty());
}

//==============================================================================
TEST (BufferArrayTest, IsAVectorOfBuffersWithLayouts)
{
    auto& arrayClass = BufferArray::staticClass;
    EXPECT_EQ (arrayClass.getBaseClass()->getName(), "OwnedVector(BufferWithLayout)");
    auto array = createOwned<BufferArray>();
    EXPECT_EQ (array->getClassName(), "BufferArray");
    EXPECT_EQ (array->getTargetClass(), &BufferWithLayout::staticClass);
    auto& entryClass = BufferWithLayout::staticClass;
    ASSERT_EQ (entryClass.getNumMemberVariables(), 2u);
    EXPECT_EQ (entryClass.getMemberVariableSignature (0)->getValueClass()->getName(), "OwnedPointer(Buffer)");
    EXPECT_EQ (entryClass.getMemberVariableSignature (1)->getValueClass()->getName(), "BufferLayout");
}

TEST (BufferArrayTest, AttributeSizeIsTheSumOfTheLayouts)
{
    BufferArray array;
    EXPECT_EQ (array.getAttributeSizeInBytes(), 0u);
    BufferLayout layout;
    layout.setLayout (3, BufferComponentTypeEnum::float32, 100, 0, false);
    array.appendInterleavedBufferLayout (layout, false);
    layout.setLayout (2, BufferComponentTypeEnum::int16, 0, 0, false);
    array.appendInterleavedBufferLayout (layout, false);
    layout.setLayout (1, BufferComponentTypeEnum::int24, 0, 0, false);
    array.appendInterleavedBufferLayout (layout, false);
    EXPECT_EQ (array.getAttributeSizeInBytes(), 19u);
    std::vector<uint64_t> offsets, strides;
    for (auto* entry : array)
    {
        offsets.push_back (entry->getLayout().getOffset());
        strides.push_back (entry->getLayout().getStride());
        EXPECT_EQ (entry->getBuffer().get(), nullptr);
    }
    EXPECT_EQ (offsets, (std::vector<uint64_t> { 0, 12, 16 }));
    EXPECT_EQ (strides, (std::vector<uint64_t> { 19, 19, 19 }));
}

TEST (BufferArrayTest, InterleavedMeansOneBufferForAll)
{
    BufferArray array;
    EXPECT_TRUE (array.isInterleavedBuffer());
    BufferLayout layout;
    array.appendInterleavedBufferLayout (layout, false);
    array.appendInterleavedBufferLayout (layout, false);
    EXPECT_FALSE (array.isInterleavedBuffer());

    auto* shared = create<Float32Buffer>();
    array.setInterleavedBuffer (shared, false);
    EXPECT_TRUE (array.isInterleavedBuffer());
    EXPECT_EQ (array.get (1)->getBuffer().get(), shared);
    array.get (1)->getBuffer().set (create<Float32Buffer>(), false);
    EXPECT_FALSE (array.isInterleavedBuffer());
}

TEST (BufferArrayTest, CommonComponentTypeIsFloat32WithoutOne)
{
    BufferArray array;
    EXPECT_FALSE (array.hasACommonComponentType());
    EXPECT_EQ (array.getCommonComponentType(), BufferComponentTypeEnum::float32);
    BufferLayout layout;
    layout.setComponentType (BufferComponentTypeEnum::uint16, false);
    array.appendInterleavedBufferLayout (layout, false);
    array.appendInterleavedBufferLayout (layout, false);
    EXPECT_TRUE (array.hasACommonComponentType());
    EXPECT_EQ (array.getCommonComponentType(), BufferComponentTypeEnum::uint16);
    layout.setComponentType (BufferComponentTypeEnum::int8, false);
    array.appendInterleavedBufferLayout (layout, false);
    EXPECT_FALSE (array.hasACommonComponentType());
    EXPECT_EQ (array.getCommonComponentType(), BufferComponentTypeEnum::float32);
}
