#include "Atomic/AtomicTestSupport.h"
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Standard/StateObject.h>
#include <cmath>

using namespace tov;
using namespace tov::test;

namespace
{
std::shared_ptr<State> parse (const juce::String& text)
{
    ToStringExecutionContext context;
    return State::createFromStateString (context, text, "test");
}
} // namespace

TEST (ValueObjectTest, SetStoresAndNotifiesOnlyOnAChange)
{
    TestInteger number;
    ChangeCounter changes (number);
    number.set (4);
    number.set (4);
    EXPECT_EQ (number.get(), 4);
    EXPECT_EQ (changes.count, 1);
    number.set (5, false);
    EXPECT_EQ (number.get(), 5);
    EXPECT_EQ (changes.count, 1);
}

TEST (ValueObjectTest, ComparesAndCopiesTheValue)
{
    TestText a ("left"), b ("right");
    EXPECT_FALSE (a.equals (b));
    a.copyTo (b);
    EXPECT_EQ (b.get(), "left");
    EXPECT_TRUE (a.equals (b));
}

TEST (ValueObjectTest, CopyingIntoAnotherKindOfObjectLeavesItsValue)
{
    TestText text ("words");
    TestInteger number (3);
    text.copyTo (number);
    EXPECT_EQ (number.get(), 3);
}

TEST (ValueObjectTest, RealsCompareByBitPattern)
{
    Real a (std::nan ("")), b (std::nan (""));
    EXPECT_TRUE (a.equals (b));
    Real zero (0.0), negativeZero (-0.0);
    EXPECT_FALSE (zero.equals (negativeZero));
}

TEST (ValueObjectTest, SavesAndLoadsThroughTheTraitsOfItsType)
{
    TestInteger number (42);
    EXPECT_EQ (StateObjectExporter::make (number, 0, false)->saveToString(), "42\n");
    EXPECT_EQ (number.toString(), "42");

    TestText text;
    auto outcome = loadFromState (text, parse ("\"loaded\""));
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (text.get(), "loaded");
    EXPECT_EQ (outcome.messages, "");
}

TEST (ValueObjectTest, AFailedLoadLeavesTheValueAndNotifiesNobody)
{
    TestInteger number (7);
    ChangeCounter changes (number);
    auto outcome = loadFromState (number, parse ("\"seven\""));
    EXPECT_FALSE (outcome.result);
    EXPECT_EQ (number.get(), 7);
    EXPECT_EQ (changes.count, 0);
    EXPECT_EQ (outcome.messages, "Error: Wrong type: expected integer, found string (in \"seven\") (in ObjectImporter::checkType)\n");
}

TEST (ValueObjectTest, StateValuesCompareByContent)
{
    StateObject a (parse ("{x = 1}")), b (parse ("{x = 1}"));
    EXPECT_TRUE (a.equals (b));
    ChangeCounter changes (a);
    a.set (parse ("{x = 1}"));
    EXPECT_EQ (changes.count, 0);
    a.set (parse ("{x = 2}"));
    EXPECT_EQ (changes.count, 1);
    EXPECT_EQ (a.toString(), "{x = 2}");
}
