#include "AtomicTestSupport.h"

using namespace tov;
using namespace tov::test;

TEST (StringTest, SetNotifiesOnlyOnAChange)
{
    String text;
    ChangeCounter counter (text);
    EXPECT_TRUE (text.isEmpty());
    text.set ("abc");
    text.set ("abc");
    EXPECT_TRUE (text.isNotEmpty());
    EXPECT_EQ (text.toString(), "abc");
    text.reset();
    EXPECT_TRUE (text.isEmpty());
    EXPECT_EQ (counter.count, 2);
}

TEST (StringTest, SavesAStringAndLoadsItBack)
{
    String source ("a \"quoted\" word\nand a line"), target;
    EXPECT_EQ (source.makeState (false)->getString(), source.get());
    EXPECT_TRUE (saveAndLoad (source, target).result);
    EXPECT_EQ (target.get(), source.get());
    EXPECT_TRUE (target.equals (source));
}

TEST (StringTest, LoadRejectsOtherTypes)
{
    String text ("kept");
    EXPECT_FALSE (loadFromState (text, std::make_shared<State> (2.0)).result);
    EXPECT_EQ (text.get(), "kept");
}

TEST (StringTest, ConvertsFromAnyObjectThroughItsText)
{
    String text;
    EXPECT_TRUE (Integer (12).isConvertibleTo (text));
    Integer (12).convertToObject (text);
    EXPECT_EQ (text.get(), "12");
    Boolean (true).convertToObject (text);
    EXPECT_EQ (text.get(), "true");
}

TEST (StringTest, LabelsItsOwnerAsName)
{
    NameableObject object;
    object.name.set ("Lamp");
    EXPECT_EQ (object.getLabelVariable(), &object.name);
    EXPECT_EQ (object.getFriendlyName(), "Lamp");
}

TEST (StringTest, MultiLineAndSourceCodeAreTexts)
{
    MultiLineString lines ("one\ntwo");
    SourceCode code ("int main() {}");
    EXPECT_EQ (lines.toString(), "one\ntwo");
    EXPECT_EQ (code.makeState (false)->getString(), "int main() {}");
    EXPECT_TRUE (SourceCode::staticClass.inheritsFrom (&String::staticClass));
}
