#include "Atomic/AtomicTestSupport.h"
#include "BufferTestSupport.h"
#include <Tov/Standard/BufferLayout.h>
#include <Tov/Standard/Float32Buffer.h>
#include <Tov/Standard/Float64Buffer.h>
#include <Tov/Standard/Int32Buffer.h>
#include <Tov/Standard/UInt32Buffer.h>
#include <Tov/Standard/UInt8Buffer.h>
#include <string>
#include <vector>

using namespace tov;
using namespace tov::test;

namespace
{
/** A memory buffer that writes each lock and unlock into a log shared with other buffers. */
class LockLoggingBuffer : public MemoryBuffer
{
public:
    LockLoggingBuffer (std::vector<std::string>& log, std::string name) : log (log), name (std::move (name)) {}

    const void* readLock() const override             { note ("readLock"); return MemoryBuffer::readLock(); }
    bool unlockRead (const void* data) const override { note ("unlockRead"); return MemoryBuffer::unlockRead (data); }
    void* readWriteLock() override                    { note ("readWriteLock"); return MemoryBuffer::readWriteLock(); }
    bool unlockReadWrite (void* data) override        { note ("unlockReadWrite"); return MemoryBuffer::unlockReadWrite (data); }
    void* writeLock() override                        { note ("writeLock"); return MemoryBuffer::readWriteLock(); }
    bool unlockWrite (void* data) override            { note ("unlockWrite"); return true; }

private:
    std::vector<std::string>& log;
    std::string name;

    void note (const char* what) const                { log.push_back (name + " " + what); }
};

void fill (MemoryBuffer& buffer, std::initializer_list<uint8_t> bytes)
{
    buffer.resize (bytes.size(), false);
    std::copy (bytes.begin(), bytes.end(), static_cast<uint8_t*> (buffer.readWriteLock()));
}

} // namespace

//==============================================================================
TEST (BufferComponentTypeTest, SizesFollowTheTableAndUnknownValuesHaveNone)
{
    const uint64_t expected[] = { 1, 1, 2, 2, 4, 4, 4, 4, 4, 4, 2, 4, 8, 3 };
    for (int value = 0; value < 14; ++value)
        EXPECT_EQ (BufferLayout::getComponentTypeSizeInBytes ((BufferComponentTypeEnum) value), expected[value]) << value;
    EXPECT_EQ (BufferLayout::getComponentTypeSizeInBytes ((BufferComponentTypeEnum) 14), 0u);
    EXPECT_EQ (BufferLayout::getComponentTypeSizeInBytes ((BufferComponentTypeEnum) -1), 0u);
}

TEST (BufferComponentTypeTest, OnlyThePackedTypesAreLikeRGB10A2)
{
    std::vector<int> packed;
    for (int value = -1; value <= 14; ++value)
        if (BufferLayout::isRGB10A2LikeComponentType ((BufferComponentTypeEnum) value))
            packed.push_back (value);
    EXPECT_EQ (packed, (std::vector<int> { 6, 7, 8, 9 }));
}

TEST (BufferComponentTypeTest, ElementsAreNamedAsTheTypes)
{
    BufferComponentType type;
    type.setType (BufferComponentTypeEnum::uint10_10_10_2, false);
    EXPECT_EQ (type.toString(), "uint10_10_10_2");
    EXPECT_TRUE (loadFromText (type, "\"int24\"").result);
    EXPECT_EQ (type.getType(), BufferComponentTypeEnum::int24);
    EXPECT_EQ (BufferComponentType::staticClass.getNumElements(), 14u);
}

//==============================================================================
TEST (BufferLayoutTest, StartsAsOneFloat32ComponentAtOffsetZero)
{
    auto layout = createOwned<BufferLayout>();
    EXPECT_EQ (layout->getNumComponents(), 1u);
    EXPECT_EQ (layout->getComponentType(), BufferComponentTypeEnum::float32);
    EXPECT_EQ (layout->getOffset(), 0u);
    EXPECT_EQ (layout->getStride(), 0u);
    EXPECT_EQ (layout->getSizeInBytes(), 4u);
    auto* signature = BufferLayout::staticClass.findMemberVariableSignature ("componentType");
    ASSERT_NE (signature, nullptr);
    EXPECT_EQ (signature->getAttribute ("default")->toString(), "\"float32\"");
}

TEST (BufferLayoutTest, VariablesFollowTheNameInOrder)
{
    auto& layoutClass = BufferLayout::staticClass;
    ASSERT_EQ (layoutClass.getNumMemberVariables(), 5u);
    const char* names[] = { "name", "numComponents", "componentType", "offset", "stride" };
    const char* classes[] = { "String", "MemorySize", "BufferComponentType", "MemorySize", "MemorySize" };
    for (size_t i = 0; i < 5; ++i)
    {
        EXPECT_EQ (layoutClass.getMemberVariableSignature (i)->getName(), names[i]);
        EXPECT_EQ (layoutClass.getMemberVariableSignature (i)->getValueClass()->getName(), classes[i]);
    }
    EXPECT_EQ (layoutClass.getBaseClass()->getName(), "NameableObject");
}

TEST (BufferLayoutTest, SetLayoutSetsAllFourAndTheSizeIsPerElement)
{
    BufferLayout layout;
    ChangeCounter counter (layout);
    layout.setLayout (3, BufferComponentTypeEnum::int24, 8, 20, false);
    EXPECT_EQ (counter.count, 0);
    EXPECT_EQ (layout.getNumComponents(), 3u);
    EXPECT_EQ (layout.getComponentType(), BufferComponentTypeEnum::int24);
    EXPECT_EQ (layout.getOffset(), 8u);
    EXPECT_EQ (layout.getStride(), 20u);
    EXPECT_EQ (layout.getSizeInBytes(), 9u);
    layout.setComponentType ((BufferComponentTypeEnum) 20, false);
    EXPECT_EQ (layout.getSizeInBytes(), 0u);
}

//==============================================================================
TEST (BufferTest, FirstAppendReserves16BytesAndGrowingFrom100ReservesHalfAsMuchAgain)
{
    MemoryBuffer buffer;
    buffer.appendToBuffer (1);
    EXPECT_EQ (buffer.getSizeInBytes(), 1u);
    EXPECT_EQ (buffer.getCapacity(), 16u);

    MemoryBuffer hundred;
    hundred.resize (100, false);
    EXPECT_EQ (hundred.getCapacity(), 100u);
    hundred.appendToBuffer (1);
    EXPECT_EQ (hundred.getSizeInBytes(), 101u);
    EXPECT_EQ (hundred.getCapacity(), 151u);
}

TEST (BufferTest, AppendingReturnsTheNewPartAndKeepsTheOldBytes)
{
    MemoryBuffer buffer;
    *static_cast<uint8_t*> (buffer.appendToBuffer (1)) = 7;
    const void* block = buffer.readLock();
    auto* added = static_cast<uint8_t*> (buffer.appendToBuffer (15));
    EXPECT_EQ (buffer.readLock(), block);
    EXPECT_EQ (added, static_cast<const uint8_t*> (block) + 1);
    buffer.appendToBuffer (1);
    EXPECT_EQ (buffer.getCapacity(), 25u);
    EXPECT_EQ (*static_cast<const uint8_t*> (buffer.readLock()), 7);
}

TEST (BufferTest, ClearOnAnEmptyBufferSendsNothing)
{
    MemoryBuffer buffer;
    ChangeCounter counter (buffer);
    buffer.clear (false);
    buffer.clear (true);
    EXPECT_EQ (counter.count, 0);
    buffer.reserve (32);
    buffer.clear (true);
    EXPECT_EQ (counter.count, 0);
}

TEST (BufferTest, ClearKeepsTheCapacityAndNotifiesOnlyWhenAsked)
{
    MemoryBuffer buffer;
    ChangeCounter counter (buffer);
    buffer.resize (40, false);
    buffer.clear (false);
    EXPECT_EQ (buffer.getSizeInBytes(), 0u);
    EXPECT_EQ (buffer.getCapacity(), 40u);
    EXPECT_EQ (counter.count, 0);
    buffer.resize (3, false);
    buffer.clear (true);
    EXPECT_EQ (counter.count, 1);
    EXPECT_TRUE (buffer.isEmpty());
}

TEST (BufferTest, ResizeClearsWhatItAddsAndKeepsTheCapacityWhenShrinking)
{
    MemoryBuffer buffer;
    ChangeCounter counter (buffer);
    fill (buffer, { 1, 2, 3, 4 });
    buffer.resize (2, true);
    EXPECT_EQ (buffer.getCapacity(), 4u);
    buffer.resize (4, true);
    EXPECT_EQ (bytesOf (buffer), (std::vector<uint8_t> { 1, 2, 0, 0 }));
    buffer.resize (4, true);
    EXPECT_EQ (counter.count, 2);
}

TEST (BufferTest, EqualsBufferComparesSizesThenBytes)
{
    MemoryBuffer a, b, empty1, empty2;
    EXPECT_TRUE (empty1.equalsBuffer (empty2));
    EXPECT_TRUE (a.equalsBuffer (a));
    fill (a, { 1, 2, 3 });
    fill (b, { 1, 2 });
    EXPECT_FALSE (a.equalsBuffer (b));
    fill (b, { 1, 2, 3 });
    EXPECT_TRUE (a.equalsBuffer (b));
    EXPECT_TRUE (a.equals (b));
    static_cast<uint8_t*> (b.readWriteLock())[2] = 4;
    EXPECT_FALSE (a.equalsBuffer (b));
    EXPECT_FALSE (a.equals (b));
}

TEST (BufferTest, EqualsBufferUnlocksTheOtherFirstAndLocksNothingForDifferentSizes)
{
    std::vector<std::string> log;
    LockLoggingBuffer a (log, "a"), b (log, "b");
    fill (a, { 5, 6 });
    fill (b, { 5 });
    log.clear();
    EXPECT_FALSE (a.equalsBuffer (b));
    EXPECT_TRUE (log.empty());
    fill (b, { 5, 6 });
    log.clear();
    EXPECT_TRUE (a.equalsBuffer (b));
    EXPECT_EQ (log, (std::vector<std::string> { "a readLock", "b readLock", "b unlockRead", "a unlockRead" }));
}

TEST (BufferTest, CopySubBufferLocksInOrderAndNotifiesTheTarget)
{
    std::vector<std::string> log;
    LockLoggingBuffer source (log, "source"), target (log, "target");
    fill (source, { 1, 2, 3, 4 });
    fill (target, { 9, 9, 9, 9, 9 });
    ChangeCounter counter (target);
    log.clear();
    source.copySubBufferTo (target, 1, 2, 3, true);
    EXPECT_EQ (log, (std::vector<std::string> { "source readLock", "target writeLock", "target unlockWrite", "source unlockRead" }));
    EXPECT_EQ (bytesOf (target), (std::vector<uint8_t> { 9, 9, 2, 3, 4 }));
    EXPECT_EQ (counter.count, 1);
    source.copySubBufferTo (target, 0, 0, 1, false);
    EXPECT_EQ (counter.count, 1);
}

TEST (BufferTest, CopySubBufferOfNothingOrOutsideTheBuffersDoesNothing)
{
    std::vector<std::string> log;
    LockLoggingBuffer source (log, "source"), target (log, "target");
    fill (source, { 1, 2 });
    fill (target, { 7, 7 });
    ChangeCounter counter (target);
    log.clear();
    source.copySubBufferTo (target, 0, 0, 0, true);
    source.copySubBufferTo (target, 1, 0, 2, true);
    source.copySubBufferTo (target, 0, 1, 2, true);
    source.copySubBufferTo (target, ~(uint64_t) 0, 0, 2, true);
    EXPECT_TRUE (log.empty());
    EXPECT_EQ (counter.count, 0);
    EXPECT_EQ (bytesOf (target), (std::vector<uint8_t> { 7, 7 }));
}

TEST (BufferTest, CopyBufferToItselfDoesNothingAndToAnotherCopiesFromTheStart)
{
    MemoryBuffer source, target;
    ChangeCounter sourceChanges (source), targetChanges (target);
    fill (source, { 1, 2 });
    fill (target, { 0, 0, 5 });
    source.copyBufferTo (source, true);
    EXPECT_EQ (sourceChanges.count, 0);
    source.copyBufferTo (target, true);
    EXPECT_EQ (bytesOf (target), (std::vector<uint8_t> { 1, 2, 5 }));
    EXPECT_EQ (targetChanges.count, 1);
}

TEST (BufferTest, CopyToResizesTheTargetThenCopiesLayoutAndBytesWithNotification)
{
    MemoryBuffer source, target;
    fill (source, { 1, 2, 3 });
    source.getLayout().setLayout (3, BufferComponentTypeEnum::uint8, 0, 3, false);
    fill (target, { 4, 4, 4, 4, 4, 4 });
    ChangeCounter counter (target);
    source.copyTo (target);
    EXPECT_EQ (bytesOf (target), (std::vector<uint8_t> { 1, 2, 3 }));
    EXPECT_EQ (target.getLayout().getNumComponents(), 3u);
    EXPECT_EQ (target.getLayout().getComponentType(), BufferComponentTypeEnum::uint8);
    EXPECT_EQ (counter.count, 1);
    EXPECT_TRUE (target.equals (source));

    auto copy = Owned<Object> (source.clone());
    EXPECT_EQ (copy->getClassName(), "MemoryBuffer");
    EXPECT_TRUE (copy->equals (source));
}

//==============================================================================
TEST (BufferTest, VectorBufferGivesTypedAccessWithoutNotifying)
{
    Float32Buffer buffer;
    ChangeCounter counter (buffer);
    buffer.append (1.5f);
    buffer.append (2.5f);
    buffer.append (3.5f);
    EXPECT_EQ (buffer.size(), 3);
    EXPECT_EQ (buffer.getSizeInBytes(), 12u);
    EXPECT_EQ (buffer.get (1), 2.5f);
    buffer[1] = 4.0f;
    buffer.set (0, -1.0f);
    EXPECT_EQ (buffer.back(), 3.5f);
    buffer.popBack();
    EXPECT_EQ (buffer.size(), 2);
    EXPECT_EQ (buffer.getData()[0], -1.0f);
    EXPECT_EQ (buffer[1], 4.0f);
    EXPECT_EQ (counter.count, 0);

    const double values[] = { 0.25, 0.5 };
    Float64Buffer reals;
    reals.reserve (10);
    EXPECT_EQ (reals.getCapacity(), 80u);
    reals.copyFrom (values, 2);
    EXPECT_EQ (reals.size(), 2);
    EXPECT_EQ (reals[1], 0.5);
    reals.resize (3);
    EXPECT_EQ (reals[2], 0.0);
}

TEST (BufferTest, VectorBufferCountsElementsWhereResizableBufferCountsBytes)
{
    Int32Buffer integers;
    ResizableBuffer& bytes = integers;
    bytes.resize (8, false);
    EXPECT_EQ (integers.size(), 2);
    integers.resize (3);
    EXPECT_EQ (bytes.getSizeInBytes(), 12u);
    bytes.reserve (40);
    EXPECT_EQ (integers.getCapacity(), 40u);
    integers.reserve (20);
    EXPECT_EQ (integers.getCapacity(), 80u);
    EXPECT_EQ (integers.size(), 3);
}

TEST (BufferTest, TypedBuffersHaveTheLayoutsOfTheirTypesAlsoWhenMadeByTheirClasses)
{
    struct Expected { Class* typedClass; BufferComponentTypeEnum type; uint64_t stride; };
    const Expected expectations[] = {
        { &UInt8Buffer::staticClass, BufferComponentTypeEnum::uint8, 1 },
        { &Int32Buffer::staticClass, BufferComponentTypeEnum::int32, 4 },
        { &UInt32Buffer::staticClass, BufferComponentTypeEnum::uint32, 4 },
        { &Float32Buffer::staticClass, BufferComponentTypeEnum::float32, 4 },
        { &Float64Buffer::staticClass, BufferComponentTypeEnum::float64, 8 } };
    for (const auto& expected : expectations)
    {
        auto buffer = Owned<ResizableBuffer> (static_cast<ResizableBuffer*> (expected.typedClass->createObject()));
        ASSERT_NE (buffer, nullptr);
        EXPECT_EQ (buffer->getLayout().getComponentType(), expected.type) << expected.typedClass->getName();
        EXPECT_EQ (buffer->getLayout().getNumComponents(), 1u);
        EXPECT_EQ (buffer->getLayout().getStride(), expected.stride);
        EXPECT_EQ (expected.typedClass->getBaseClass()->getName(), "MemoryBuffer");
    }
    UInt8Buffer onStack;
    EXPECT_EQ (onStack.getLayout().getComponentType(), BufferComponentTypeEnum::uint8);
}

TEST (BufferTest, ClassesAndAttributes)
{
    EXPECT_TRUE (Buffer::staticClass.isAbstract());
    EXPECT_TRUE (ResizableBuffer::staticClass.isAbstract());
    EXPECT_FALSE (MemoryBuffer::staticClass.isAbstract());
    EXPECT_EQ (ResizableBuffer::staticClass.getBaseClass()->getName(), "Buffer");
    EXPECT_EQ (MemoryBuffer::staticClass.getBaseClass()->getName(), "ResizableBuffer");
    EXPECT_EQ (Float32Buffer::staticClass.getIntegerAttribute ("heightWhenUsedInParameterRow", -1), 100);
    EXPECT_EQ (Float64Buffer::staticClass.getIntegerAttribute ("heightWhenUsedInParameterRow", -1), -1);
    EXPECT_EQ (MemoryBuffer().getNativeIdentifier(), 0);
    MemoryBuffer buffer;
    buffer.resize (1536, false);
    EXPECT_EQ (buffer.toString(), "1.5 KB");
}
