#include "ContainerTestSupport.h"

using namespace tov;
using namespace tov::test;

namespace
{
class StringVectorTest : public ContainerTest {};
} // namespace

TEST_F (StringVectorTest, AppendsAndFindsByContent)
{
    StringVector strings;
    strings.append ("a");
    strings.append ("b");
    EXPECT_EQ (strings.find ("b"), 1);
    EXPECT_EQ (strings.find ("c"), -1);
    EXPECT_TRUE (strings.contains ("a"));
    EXPECT_EQ (strings.get (0)->getClass(), &String::staticClass);
    EXPECT_EQ (strings.getTargetClass(), &String::staticClass);
    EXPECT_EQ (strings.getClass()->getName(), "StringVector");
}

TEST_F (StringVectorTest, SetFromTextsAndReadBackAsTextsOrStringArray)
{
    StringVector strings;
    strings.set ({ "x", "y", "z" });
    EXPECT_EQ (strings.getVector(), (std::vector<juce::String> { "x", "y", "z" }));
    EXPECT_EQ (strings.getStringArray().joinIntoString (","), "x,y,z");
    EXPECT_EQ (strings.toString(), "[x, y, z]");
}

TEST_F (StringVectorTest, SettingTheSameTextsDoesNotNotify)
{
    StringVector strings ({ "x", "y" });
    String* first = strings.get (0);
    ChangeCounter changes (strings);
    strings.set ({ "x", "y" });
    EXPECT_EQ (changes.count, 0);
    EXPECT_EQ (strings.get (0), first);
    strings.set ({ "y" });
    EXPECT_EQ (changes.count, 1);
}

TEST_F (StringVectorTest, AddCyclicCountedLogWithAnEmptyMessageLeavesTheCounter)
{
    StringVector log;
    int64_t counter = 5;
    ChangeCounter changes (log);
    log.addCyclicCountedLog ({}, counter, 3);
    EXPECT_EQ (counter, 5);
    EXPECT_TRUE (log.isEmpty());
    EXPECT_EQ (changes.count, 0);
}

TEST_F (StringVectorTest, AddCyclicCountedLogKeepsTheLastMessagesInARing)
{
    StringVector log;
    int64_t counter = 0;
    ChangeCounter changes (log);
    for (auto* message : { "boot", "load", "play", "stop" })
        log.addCyclicCountedLog (message, counter, 3);
    EXPECT_EQ (counter, 4);
    EXPECT_EQ (log.getVector(), (std::vector<juce::String> { "3 stop", "1 load", "2 play" }));
    EXPECT_EQ (changes.count, 4);
}

TEST_F (StringVectorTest, SavesAndLoadsAsAListOfTexts)
{
    StringVector strings ({ "a", "b c" });
    auto state = strings.makeState (true, false);
    EXPECT_EQ (state->saveToString().trimEnd(), "{=> \"a\", => \"b c\"}");
    StringVector loaded;
    EXPECT_TRUE (loadFromState (loaded, state).result);
    EXPECT_EQ (loaded.getVector(), strings.getVector());
    EXPECT_TRUE (loaded.equals (strings));
}
