#include "AtomicTestClasses.h"

using namespace tov;
using namespace tov::test;

class MemorySizeTest : public AtomicTestClassesFixture {};

TEST_F (MemorySizeTest, ScaledFormPicksTheUnitBelow1024)
{
    EXPECT_EQ (MemorySize::toScaledString (0), "empty");
    EXPECT_EQ (MemorySize::toScaledString (1), "1 bytes");
    EXPECT_EQ (MemorySize::toScaledString (1023), "1023 bytes");
    EXPECT_EQ (MemorySize::toScaledString (1024), "1.0 KB");
    EXPECT_EQ (MemorySize::toScaledString (1536), "1.5 KB");
    EXPECT_EQ (MemorySize::toScaledString (1048576), "1.0 MB");
    EXPECT_EQ (MemorySize::toScaledString (3758096384), "3.5 GB");
    EXPECT_EQ (MemorySize::toScaledString ((int64_t) 2000 * 1073741824), "2 000.0 GB");
}

TEST_F (MemorySizeTest, FixedFormRoundsToOneDecimalAndGroupsInThrees)
{
    EXPECT_EQ (MemorySize::toFixedString (1234.5), "1 234.5");
    EXPECT_EQ (MemorySize::toFixedString (1234567.25), "1 234 567.3");
    EXPECT_EQ (MemorySize::toFixedString (999.94), "999.9");
    EXPECT_EQ (MemorySize::toFixedString (999.96), "1 000.0");
    EXPECT_EQ (MemorySize::toFixedString (0.0), "0.0");
    EXPECT_EQ (MemorySize::toFixedString (123456.0), "123 456.0");
}

TEST_F (MemorySizeTest, ToStringIsScaledWithoutUnit)
{
    MemorySize size (1024);
    EXPECT_EQ (size.toString(), "1.0 KB");
    size.set (0);
    EXPECT_EQ (size.toString(), "empty");
}

TEST_F (MemorySizeTest, AFixedUnitShowsTheNumberInThatUnit)
{
    auto holder = createOwned<NumberHolder>();
    holder->cache.set (3 * 1048576 + 524288);
    EXPECT_EQ (holder->cache.getNumberUnit(), "MB");
    EXPECT_EQ (holder->cache.toString(), "3.5");
}

TEST_F (MemorySizeTest, ARateShowsPerSecond)
{
    auto holder = createOwned<NumberHolder>();
    EXPECT_EQ (holder->download.toString(), "0 MB/s");
    holder->download.set (2048);
    EXPECT_EQ (holder->download.toString(), "2.0 KB/s");
    holder->download.set (100);
    EXPECT_EQ (holder->download.toString(), "100 bytes/s");
}

TEST_F (MemorySizeTest, ParseNumberIgnoresCommasAndBlanks)
{
    MemorySize size;
    EXPECT_TRUE (parse (size, " 1,048,576 ").result);
    EXPECT_EQ (size.get(), 1048576);
    EXPECT_TRUE (parse (size, "2 048").result);
    EXPECT_EQ (size.get(), 2048);
}

TEST_F (MemorySizeTest, ParseNumberRejectsUnits)
{
    MemorySize size (5);
    const auto outcome = parse (size, "12 KB");
    EXPECT_FALSE (outcome.result);
    EXPECT_EQ (outcome.error, "Could not parse MemorySize value \"12kb\"");
    EXPECT_EQ (size.get(), 5);
}

TEST_F (MemorySizeTest, LoadsIntegersOnly)
{
    MemorySize size (5);
    EXPECT_TRUE (loadFromState (size, std::make_shared<State> ((int64_t) 4096)).result);
    EXPECT_EQ (size.get(), 4096);
    const auto outcome = loadFromState (size, std::make_shared<State> (10.0));
    EXPECT_FALSE (outcome.result);
    EXPECT_TRUE (outcome.messages.startsWith ("Error: Wrong type: expected integer, found real")) << outcome.messages;
    EXPECT_EQ (size.get(), 4096);
}

TEST_F (MemorySizeTest, SavesAnInteger)
{
    EXPECT_EQ (MemorySize (4096).makeState (false)->toShortString(), "4096");
}
