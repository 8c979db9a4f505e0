#include "Support/TestValues.h"
#include <Tov/Core/ObjectTable.h>
#include <gtest/gtest.h>
#include <random>
#include <unordered_map>
#include <vector>

using namespace tov;
using namespace tov::test;

namespace
{
/** Distinct addresses to store; the table never looks at what they point to. */
Object* fakeObject (uint64_t number)
{
    return reinterpret_cast<Object*> ((uintptr_t) (number + 1) * 16);
}

std::unordered_map<uint64_t, Object*> contentsOf (const ObjectTable& table)
{
    std::unordered_map<uint64_t, Object*> contents;
    table.forEach ([&] (UniqueIdentifier identifier, Object* object) { contents[identifier.getInt64()] = object; });
    return contents;
}
} // namespace

TEST (ObjectTableTest, EmptyTableFindsNothing)
{
    ObjectTable table;
    EXPECT_EQ (table.size(), 0u);
    EXPECT_EQ (table.find (UniqueIdentifier (1)), nullptr);
    table.erase (UniqueIdentifier (1));
    EXPECT_TRUE (contentsOf (table).empty());
}

TEST (ObjectTableTest, SetReplacesWhatStoodUnderTheIdentifier)
{
    ObjectTable table;
    table.set (UniqueIdentifier (7), fakeObject (1));
    table.set (UniqueIdentifier (7), fakeObject (2));
    EXPECT_EQ (table.size(), 1u);
    EXPECT_EQ (table.find (UniqueIdentifier (7)), fakeObject (2));
}

TEST (ObjectTableTest, TheNullIdentifierNeverEnters)
{
    ObjectTable table;
    table.set (UniqueIdentifier(), fakeObject (1));
    table.set (UniqueIdentifier (3), fakeObject (3));
    EXPECT_EQ (table.size(), 1u);
    EXPECT_EQ (table.find (UniqueIdentifier()), nullptr);
}

TEST (ObjectTableTest, ClearEmptiesAndTheTableWorksAgain)
{
    ObjectTable table;
    for (uint64_t i = 1; i <= 100; ++i)
        table.set (UniqueIdentifier (i), fakeObject (i));
    table.clear();
    EXPECT_EQ (table.size(), 0u);
    EXPECT_EQ (table.find (UniqueIdentifier (5)), nullptr);
    table.set (UniqueIdentifier (5), fakeObject (5));
    EXPECT_EQ (table.find (UniqueIdentifier (5)), fakeObject (5));
}

TEST (ObjectTableTest, ConsecutiveIdentifiersSurviveErasesInTheMiddleOfTheirRuns)
{
    ObjectTable table;
    for (uint64_t i = 1; i <= 1000; ++i)
        table.set (UniqueIdentifier (i), fakeObject (i));
    for (uint64_t i = 2; i <= 1000; i += 3)
        table.erase (UniqueIdentifier (i));
    for (uint64_t i = 1; i <= 1000; ++i)
        EXPECT_EQ (table.find (UniqueIdentifier (i)), i % 3 == 2 ? nullptr : fakeObject (i)) << i;
    EXPECT_EQ (table.size(), 667u);
}

TEST (ObjectTableTest, PrefetchLeavesTheTableAsItWas)
{
    ObjectTable table;
    table.prefetch (UniqueIdentifier (5));
    EXPECT_EQ (table.size(), 0u);
    for (uint64_t i = 1; i <= 20; ++i)
        table.set (UniqueIdentifier (i), fakeObject (i));
    const auto before = contentsOf (table);
    for (uint64_t i = 0; i <= 40; ++i)
        table.prefetch (UniqueIdentifier (i));
    EXPECT_EQ (contentsOf (table), before);
    EXPECT_EQ (table.find (UniqueIdentifier (7)), fakeObject (7));
}

// 300,000 entries take 2^20 slots of 16 bytes: the array lies in huge pages.
TEST (ObjectTableTest, ATableOfSeveralMegabytesKeepsEveryEntry)
{
    ObjectTable table;
    std::mt19937_64 random (11);
    std::vector<uint64_t> identifiers (300000);
    for (auto& identifier : identifiers)
        identifier = random() | 1;
    for (size_t i = 0; i < identifiers.size(); ++i)
        table.set (UniqueIdentifier (identifiers[i]), fakeObject (i));
    EXPECT_EQ (table.size(), identifiers.size());
    for (size_t i = 0; i < identifiers.size(); i += 2)
        table.erase (UniqueIdentifier (identifiers[i]));
    for (size_t i = 0; i < identifiers.size(); ++i)
        ASSERT_EQ (table.find (UniqueIdentifier (identifiers[i])), i % 2 == 0 ? nullptr : fakeObject (i)) << i;
    EXPECT_EQ (table.size(), identifiers.size() / 2);
    table.clear();
    EXPECT_EQ (table.find (UniqueIdentifier (identifiers[1])), nullptr);
}

TEST (ObjectTableTest, AgreesWithAnUnorderedMapOverRandomWork)
{
    ObjectTable table;
    std::unordered_map<uint64_t, Object*> reference;
    std::mt19937_64 random (7);
    // Few distinct identifiers, half of them small, so that runs of probes collide and erases shift them.
    auto drawIdentifier = [&] { return random() % 2 == 0 ? 1 + random() % 600 : (random() % 600) << 40 | 1; };
    for (int step = 0; step < 200000; ++step)
    {
        const uint64_t identifier = drawIdentifier();
        if (random() % 3 == 0)
        {
            table.erase (UniqueIdentifier (identifier));
            reference.erase (identifier);
        }
        else
        {
            table.set (UniqueIdentifier (identifier), fakeObject ((uint64_t) step));
            reference[identifier] = fakeObject ((uint64_t) step);
        }
    }
    EXPECT_EQ (table.size(), reference.size());
    EXPECT_EQ (contentsOf (table), reference);
    for (uint64_t i = 1; i <= 600; ++i)
        EXPECT_EQ (table.find (UniqueIdentifier (i)), reference.count (i) != 0 ? reference[i] : nullptr);
}
