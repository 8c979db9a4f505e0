#include <Tov/Core/ObjectPointerMap.h>
#include <gtest/gtest.h>
#include <random>
#include <unordered_map>

using namespace tov;

namespace
{
/** Distinct addresses to use as keys; the map never looks at what they point to. */
const Object* fakeObject (uint64_t number)
{
    return reinterpret_cast<const Object*> ((uintptr_t) (number + 1) * 16);
}
} // namespace

TEST (ObjectPointerMapTest, EmptyMapFindsNothing)
{
    ObjectPointerMap<int> map;
    EXPECT_TRUE (map.empty());
    EXPECT_EQ (map.find (fakeObject (1)), nullptr);
    EXPECT_EQ (map.find (nullptr), nullptr);
    map.erase (fakeObject (1));
    EXPECT_EQ (map.size(), 0u);
    EXPECT_EQ (map.getCapacity(), 0u);
}

TEST (ObjectPointerMapTest, IndexingEntersADefaultValueOnceAndFindsItAgain)
{
    ObjectPointerMap<int> map;
    EXPECT_EQ (map[fakeObject (3)], 0);
    map[fakeObject (3)] = 42;
    EXPECT_EQ (map.size(), 1u);
    ASSERT_NE (map.find (fakeObject (3)), nullptr);
    EXPECT_EQ (*map.find (fakeObject (3)), 42);
    EXPECT_EQ (map.find (fakeObject (4)), nullptr);
}

// Erasing keys from the middle of probe runs must leave every other key reachable.
TEST (ObjectPointerMapTest, RandomInsertsAndErasesAgreeWithAStandardMap)
{
    ObjectPointerMap<uint64_t> map;
    std::unordered_map<const Object*, uint64_t> reference;
    std::mt19937_64 random (7);
    for (int step = 0; step < 20000; ++step)
    {
        const auto* key = fakeObject (random() % 512);
        if (random() % 3 == 0)
        {
            map.erase (key);
            reference.erase (key);
        }
        else
        {
            map[key] = (uint64_t) step;
            reference[key] = (uint64_t) step;
        }
    }
    EXPECT_EQ (map.size(), reference.size());
    for (uint64_t i = 0; i < 512; ++i)
    {
        const auto found = reference.find (fakeObject (i));
        const auto* value = map.find (fakeObject (i));
        ASSERT_EQ (value != nullptr, found != reference.end()) << "key " << i;
        if (value != nullptr)
            EXPECT_EQ (*value, found->second) << "key " << i;
    }
}

TEST (ObjectPointerMapTest, RemoveAllEmptiesAndKeepsTheCapacity)
{
    ObjectPointerMap<std::shared_ptr<int>> map;
    auto value = std::make_shared<int> (5);
    for (uint64_t i = 0; i < 100; ++i)
        map[fakeObject (i)] = value;
    EXPECT_EQ (value.use_count(), 101);
    EXPECT_EQ (map.getCapacity(), 128u);

    map.removeAll();
    EXPECT_EQ (map.size(), 0u);
    EXPECT_EQ (map.getCapacity(), 128u);
    EXPECT_EQ (value.use_count(), 1);
    EXPECT_EQ (map.find (fakeObject (7)), nullptr);
    map[fakeObject (7)] = value;
    EXPECT_EQ (map.size(), 1u);
}

TEST (ObjectPointerMapTest, MovingTakesTheEntriesAndLeavesTheSourceEmpty)
{
    ObjectPointerMap<int> source;
    source[fakeObject (1)] = 10;
    source[fakeObject (2)] = 20;

    ObjectPointerMap<int> target (std::move (source));
    EXPECT_EQ (target.size(), 2u);
    EXPECT_EQ (*target.find (fakeObject (2)), 20);
    EXPECT_EQ (source.size(), 0u);
    EXPECT_EQ (source.getCapacity(), 0u);
    EXPECT_EQ (source.find (fakeObject (1)), nullptr);
    source[fakeObject (3)] = 30;
    EXPECT_EQ (*source.find (fakeObject (3)), 30);
}
