#include <Tov/Core/RawBuffer.h>
#include <gtest/gtest.h>
#include <cstring>

using namespace tov;

TEST (RawBufferTest, DefaultIsEmptyView)
{
    RawBuffer buffer;
    EXPECT_EQ (buffer.getSize(), 0u);
    EXPECT_EQ (buffer.getData(), nullptr);
    EXPECT_FALSE (buffer.isDataOwned());
}

TEST (RawBufferTest, CopyOfOwnerOwnsACopyAndCopyOfViewIsAView)
{
    char bytes[] = "abcd";
    RawBuffer owner (4, bytes, true);
    RawBuffer view (4, bytes, false);

    RawBuffer ownerCopy (owner);
    EXPECT_TRUE (ownerCopy.isDataOwned());
    EXPECT_NE (ownerCopy.getData(), owner.getData());
    EXPECT_EQ (ownerCopy, owner);

    RawBuffer viewCopy (view);
    EXPECT_FALSE (viewCopy.isDataOwned());
    EXPECT_EQ (viewCopy.getData(), static_cast<void*> (bytes));
}

TEST (RawBufferTest, MoveOwnershipFromOwnerLeavesAViewOnTheSameBytes)
{
    char bytes[] = "hello";
    RawBuffer source (5, bytes, true);
    void* block = source.getData();
    RawBuffer target;
    source.moveOwnershipTo (target);

    EXPECT_TRUE (target.isDataOwned());
    EXPECT_EQ (target.getData(), block);
    EXPECT_FALSE (source.isDataOwned());
    EXPECT_EQ (source.getData(), block);
    EXPECT_EQ (source.getSize(), 5u);
}

TEST (RawBufferTest, MoveOwnershipFromViewCopies)
{
    char bytes[] = "view";
    RawBuffer source (4, bytes, false);
    RawBuffer target;
    source.moveOwnershipTo (target);
    EXPECT_TRUE (target.isDataOwned());
    EXPECT_NE (target.getData(), static_cast<void*> (bytes));
    EXPECT_EQ (memcmp (target.getData(), "view", 4), 0);
}

TEST (RawBufferTest, ReallocateOnViewCopiesAndLeavesTheViewedMemory)
{
    char bytes[] = { 1, 2, 3, 4 };
    RawBuffer buffer (4, bytes, false);
    auto* grown = static_cast<char*> (buffer.reallocateData (6, true));
    EXPECT_TRUE (buffer.isDataOwned());
    EXPECT_NE (static_cast<void*> (grown), static_cast<void*> (bytes));
    EXPECT_EQ (buffer.getSize(), 6u);
    const char expected[] = { 1, 2, 3, 4, 0, 0 };
    EXPECT_EQ (memcmp (grown, expected, 6), 0);
    EXPECT_EQ (bytes[0], 1);
    EXPECT_EQ (bytes[3], 4);
}

TEST (RawBufferTest, ReallocateToTheSameSizeKeepsThePointer)
{
    char bytes[] = { 1, 2 };
    RawBuffer buffer (2, bytes, false);
    EXPECT_EQ (buffer.reallocateData (2, true), static_cast<void*> (bytes));
    EXPECT_FALSE (buffer.isDataOwned());
}

TEST (RawBufferTest, ReallocateShrinks)
{
    RawBuffer buffer (3, "xyz", true);
    buffer.reallocateData (2, false);
    EXPECT_EQ (buffer, RawBuffer (2, "xy", false));
}

TEST (RawBufferTest, Base64RoundTrip)
{
    RawBuffer buffer (3, "abc", true);
    const auto text = buffer.toBase64Encoding();
    RawBuffer decoded;
    ASSERT_TRUE (decoded.fromBase64Encoding (text));
    EXPECT_EQ (decoded, buffer);
    EXPECT_TRUE (decoded.isDataOwned());
}

TEST (RawBufferTest, BadBase64IsFalseAndLeavesTheBuffer)
{
    RawBuffer buffer (3, "abc", true);
    void* before = buffer.getData();
    EXPECT_FALSE (buffer.fromBase64Encoding ("this is not base64!"));
    EXPECT_EQ (buffer.getData(), before);
    EXPECT_EQ (buffer, RawBuffer (3, "abc", false));
}

TEST (RawBufferTest, ComparesSizeAndBytes)
{
    EXPECT_EQ (RawBuffer (2, "ab", false), RawBuffer (2, "ab", true));
    EXPECT_NE (RawBuffer (2, "ab", false), RawBuffer (2, "ac", false));
    EXPECT_NE (RawBuffer (2, "ab", false), RawBuffer (1, "a", false));
}
