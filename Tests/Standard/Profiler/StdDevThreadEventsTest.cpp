#include <Tov/Standard/Profiler/StdDevThreadEvents.h>
#include <gtest/gtest.h>
#include <cstring>

using namespace tov;
using Kind = StdDevThreadEvents::Kind;

TEST (StdDevThreadEventsTest, ALabelIsMadeTheFirstTimeItHappens)
{
    StdDevThreadEvents events;
    EXPECT_EQ (events.find ("Draw", Kind::begin), nullptr);
    auto& begin = events.get ("Draw", Kind::begin);
    EXPECT_EQ (begin.getName(), "Draw");
    EXPECT_EQ (begin.getLabel(), "Draw (Begin)");
    EXPECT_EQ (&events.get (juce::String ("Draw"), Kind::begin), &begin);
    EXPECT_EQ (events.find ("Draw", Kind::begin), &begin);
    EXPECT_EQ (events.find ("Draw", Kind::end), nullptr);
    EXPECT_EQ (events.get ("Draw", Kind::end).getLabel(), "Draw (End)");
    EXPECT_EQ (events.get ("Draw", Kind::mark).getLabel(), "Draw");
    EXPECT_NE (&events.get ("Draw", Kind::mark), &begin);
}

TEST (StdDevThreadEventsTest, TextChangedInPlaceIsAnotherLabel)
{
    StdDevThreadEvents events;
    char buffer[16];
    std::strcpy (buffer, "First");
    auto& first = events.get (buffer, Kind::begin);
    std::strcpy (buffer, "Other");
    auto& other = events.get (buffer, Kind::begin);
    EXPECT_NE (&first, &other);
    EXPECT_EQ (first.getLabel(), "First (Begin)");
    EXPECT_EQ (other.getLabel(), "Other (Begin)");
    std::strcpy (buffer, "First");
    EXPECT_EQ (&events.get (buffer, Kind::begin), &first);
}

TEST (StdDevThreadEventsTest, LabelsThatShareAnEntryAreKeptApart)
{
    StdDevThreadEvents events;
    std::vector<char> block (4096, 0);
    std::vector<StdDevEvent*> made;
    for (int i = 0; i < 4; ++i)
    {
        std::strcpy (block.data() + i * 1024, ("Name" + std::to_string (i)).c_str());
        made.push_back (&events.get (block.data() + i * 1024, Kind::end));
    }
    for (int i = 0; i < 4; ++i)
    {
        EXPECT_EQ (&events.get (block.data() + i * 1024, Kind::end), made[(size_t) i]);
        EXPECT_EQ (made[(size_t) i]->getLabel(), "Name" + juce::String (i) + " (End)");
    }
}
