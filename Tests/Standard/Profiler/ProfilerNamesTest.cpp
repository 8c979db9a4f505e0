#include <Tov/Standard/Profiler/ProfilerNames.h>
#include <gtest/gtest.h>
#include <cstring>

using namespace tov;

TEST (ProfilerNamesTest, TheSameTextGivesTheStringMadeForItBefore)
{
    ProfilerNames names;
    const char* text = "Render";
    const auto first = names.get (text);
    const auto second = names.get (text);
    EXPECT_EQ (first, "Render");
    EXPECT_EQ (first.getCharPointer().getAddress(), second.getCharPointer().getAddress());
}

TEST (ProfilerNamesTest, TextChangedInPlaceGivesTheNewText)
{
    ProfilerNames names;
    char buffer[16];
    std::strcpy (buffer, "First");
    EXPECT_EQ (names.get (buffer), "First");
    std::strcpy (buffer, "Other");
    EXPECT_EQ (names.get (buffer), "Other");
    std::strcpy (buffer, "Firs");
    EXPECT_EQ (names.get (buffer), "Firs");
}

TEST (ProfilerNamesTest, TextsThatShareAnEntryGiveTheirOwnNames)
{
    ProfilerNames names;
    // 64 entries of 16 bytes: texts 1024 bytes apart share one.
    std::vector<char> block (2048, 0);
    std::strcpy (block.data(), "Low");
    std::strcpy (block.data() + 1024, "High");
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_EQ (names.get (block.data()), "Low");
        EXPECT_EQ (names.get (block.data() + 1024), "High");
    }
}
