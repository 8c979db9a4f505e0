#include "Atomic/AtomicTestSupport.h"
#include <Tov/Standard/AttributedString.h>
#include <juce_graphics/juce_graphics.h>

using namespace tov;
using namespace tov::test;

namespace
{
AttributedString makeTitle()
{
    AttributedString title ("Hello world");
    title.addAttribute (0, 5, "Sans; 14.0 Bold", juce::Colour (0xffff0000), {});
    title.addAttribute (6, 11, {}, juce::Colour (0xff0000ff), "https://example.org");
    return title;
}
} // namespace

TEST (AttributedStringTest, AttributesAreSavedAsAListOfRecords)
{
    EXPECT_EQ (makeTitle().makeState (false)->toShortString(),
               "{text = \"Hello world\", attributes = {"
               "=> {rangeStart = 0, rangeEnd = 5, font = \"Sans; 14.0 Bold\", colour = \"ffff0000\", link = \"\"}, "
               "=> {rangeStart = 6, rangeEnd = 11, font = \"\", colour = \"ff0000ff\", link = \"https://example.org\"}}}");
}

TEST (AttributedStringTest, StateFormRoundTrips)
{
    AttributedString loaded;
    const auto outcome = saveAndLoad (makeTitle(), loaded);
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_TRUE (loaded.equals (makeTitle()));
    ASSERT_EQ (loaded.getNumAttributes(), 2u);
    EXPECT_EQ (loaded.getAttribute (1).getLink(), "https://example.org");
    EXPECT_EQ (loaded.getAttribute (1).getColour(), juce::Colour (0xff0000ff));
}

// As for every object, a state sets what it names and leaves the rest.
TEST (AttributedStringTest, AStateWithoutAttributesKeepsThem)
{
    auto title = makeTitle();
    EXPECT_TRUE (loadFromText (title, "{text = \"Plain\"}").result);
    EXPECT_EQ (title.getText(), "Plain");
    EXPECT_EQ (title.getNumAttributes(), 2u);
    EXPECT_TRUE (loadFromText (title, "{attributes = {}}").result);
    EXPECT_EQ (title.getNumAttributes(), 0u);
}

TEST (AttributedStringTest, AttributesMakeADifference)
{
    AttributedString plain ("Hello world");
    EXPECT_FALSE (plain.equals (makeTitle()));
    plain = makeTitle();
    EXPECT_TRUE (plain.equals (makeTitle()));
}

TEST (AttributedStringTest, WrapsJuceAttributedString)
{
    const auto juceString = makeTitle().toJuceAttributedString();
    EXPECT_EQ (juceString.getText(), "Hello world");
    ASSERT_GE (juceString.getNumAttributes(), 2);
    EXPECT_EQ (juceString.getAttribute (0).colour, juce::Colour (0xffff0000));
    EXPECT_EQ (juceString.getAttribute (0).range, juce::Range<int> (0, 5));

    AttributedString copy;
    copy.setFromJuceAttributedString (juceString);
    EXPECT_EQ (copy.getText(), "Hello world");
    EXPECT_EQ (copy.getAttribute (0).getColour(), juce::Colour (0xffff0000));
    EXPECT_EQ (copy.getAttribute (0).getRangeEnd(), 5);
}
