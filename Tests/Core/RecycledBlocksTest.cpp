#include <Tov/Core/RecycledBlocks.h>
#include <gtest/gtest.h>
#include <new>
#include <vector>

using namespace tov;

namespace
{
class RecycledBlocksTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (! RecycledBlocks::keepsBlocks)
            GTEST_SKIP() << "nothing is kept under AddressSanitizer";
    }
};
} // namespace

TEST_F (RecycledBlocksTest, AnEmptyCacheGivesNothing)
{
    RecycledBlocks blocks;
    EXPECT_EQ (blocks.take(), nullptr);
}

TEST_F (RecycledBlocksTest, BlocksComeBackLastGivenFirst)
{
    RecycledBlocks blocks;
    void* first = ::operator new (64);
    void* second = ::operator new (64);
    blocks.give (first);
    blocks.give (second);
    EXPECT_EQ (blocks.take(), second);
    EXPECT_EQ (blocks.take(), first);
    EXPECT_EQ (blocks.take(), nullptr);
    ::operator delete (first);
    ::operator delete (second);
}

// Gives one block more than the cache holds, and takes back what it kept.
static void checkABlockBeyondTheCapacityIsFreed (RecycledBlocks& blocks, size_t capacity)
{
    std::vector<void*> given;
    for (size_t i = 0; i <= capacity; ++i)
    {
        given.push_back (::operator new (64));
        blocks.give (given.back());
    }
    size_t numTaken = 0;
    for (void* block = blocks.take(); block != nullptr; block = blocks.take())
    {
        EXPECT_EQ (block, given[capacity - 1 - numTaken]);
        ::operator delete (block);
        ++numTaken;
    }
    EXPECT_EQ (numTaken, capacity);
}

TEST_F (RecycledBlocksTest, ABlockBeyondTheCapacityIsFreed)
{
    RecycledBlocks blocks;
    EXPECT_EQ (blocks.getCapacity(), (size_t) 128);
    checkABlockBeyondTheCapacityIsFreed (blocks, 128);
}

TEST_F (RecycledBlocksTest, ACacheKeepsAsManyBlocksAsItWasGivenRoomFor)
{
    RecycledBlocks blocks (1024);
    EXPECT_EQ (blocks.getCapacity(), (size_t) 1024);
    checkABlockBeyondTheCapacityIsFreed (blocks, 1024);
}
