#include "AtomicTestClasses.h"
#include <Tov/Core/ClassExpression.h>

using namespace tov;
using namespace tov::test;

class EnumerationTest : public AtomicTestClassesFixture {};

TEST_F (EnumerationTest, TheClassListsItsElements)
{
    auto& elements = Interpolation::staticClass;
    ASSERT_EQ (elements.getNumElements(), 3u);
    EXPECT_EQ (elements.getElementName (2), "cubicSpline");
    EXPECT_EQ (elements.getElementValue (2), 5);
    EXPECT_EQ (elements.getElementFriendlyName (2), "Cubic Spline");
    EXPECT_EQ (elements.findElement ((int32_t) 5), 2);
    EXPECT_EQ (elements.findElement ((int32_t) 3), -1);
    EXPECT_EQ (elements.findElement (juce::String ("linear")), 1);
    EXPECT_EQ (elements.findElement (juce::String ("closest")), 0);
    EXPECT_EQ (elements.findElement (juce::String ("Linear")), -1);
    EXPECT_FALSE (elements.hasBitFlags());
    EXPECT_EQ (elements.getFullBitFlagsMask(), 0);
}

TEST_F (EnumerationTest, DescriptionsByLanguage)
{
    auto& elements = Interpolation::staticClass;
    EXPECT_EQ (elements.getElementDescription (1, "us-en"), "Straight line");
    EXPECT_EQ (elements.getElementDescription (1, "fr-fr"), "Ligne droite");
    EXPECT_EQ (elements.getElementDescription (1, "de-de"), "Linear");
    EXPECT_EQ (elements.getElementDescription (2), "Cubic Spline");
    EXPECT_EQ (elements.findElementByDescription ("Ligne droite", "fr-fr"), 1);
    EXPECT_EQ (elements.findElementByDescription ("Cubic Spline"), 2);
    EXPECT_EQ (elements.findElementByDescription ("Curve"), -1);
}

TEST_F (EnumerationTest, ToStringAndDescription)
{
    Interpolation interpolation (Interpolation::linear);
    EXPECT_EQ (interpolation.toString(), "linear");
    EXPECT_EQ (interpolation.getDescription(), "Straight line");
    interpolation.set (Interpolation::cubicSpline);
    EXPECT_EQ (interpolation.getDescription(), "Cubic Spline");
    interpolation.set (3);
    EXPECT_EQ (interpolation.toString(), "3");
    EXPECT_EQ (interpolation.getDescription(), "Invalid value 3");
    EXPECT_FALSE (interpolation.isValueValid());
}

TEST_F (EnumerationTest, SavesTheElementName)
{
    Interpolation interpolation (Interpolation::cubicSpline);
    EXPECT_EQ (interpolation.makeState (false)->toShortString(), "\"cubicSpline\"");
}

TEST_F (EnumerationTest, LoadsNamesAlternativeNamesAndNumbers)
{
    Interpolation interpolation;
    EXPECT_TRUE (loadFromState (interpolation, std::make_shared<State> (" cubicSpline ")).result);
    EXPECT_EQ (interpolation.get(), Interpolation::cubicSpline);
    EXPECT_TRUE (loadFromState (interpolation, std::make_shared<State> ("closest")).result);
    EXPECT_EQ (interpolation.get(), Interpolation::nearest);
    EXPECT_TRUE (loadFromState (interpolation, std::make_shared<State> (1)).result);
    EXPECT_EQ (interpolation.get(), Interpolation::linear);
}

TEST_F (EnumerationTest, AnUnknownNameGivesTheDefaultValueAndAMessage)
{
    Interpolation interpolation (Interpolation::cubicSpline);
    const auto outcome = loadFromState (interpolation, std::make_shared<State> ("bicubic"));
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "Error: Could not find enumeration element \"bicubic\" (in Interpolation::load)\n");
    EXPECT_EQ (interpolation.get(), Interpolation::nearest);
}

TEST_F (EnumerationTest, FlagsJoinTheirNamesLastDeclaredFirst)
{
    Permissions permissions (Permissions::read | Permissions::execute);
    EXPECT_EQ (permissions.toString(), "execute | read");
    EXPECT_EQ (permissions.getDescription(), "Execute | Read");
    EXPECT_EQ (permissions.makeState (false)->toShortString(), "5");
    EXPECT_TRUE (permissions.isValueValid());
    permissions.set (8);
    EXPECT_FALSE (permissions.isValueValid());
    EXPECT_EQ (Permissions::staticClass.getFullBitFlagsMask(), 7);
}

TEST_F (EnumerationTest, FlagsOfZeroNameTheElementOfZero)
{
    EXPECT_EQ (Permissions (0).toString(), "none");
    EXPECT_EQ (Permissions (0).getDescription(), "None");
    EXPECT_EQ (Channels (0).toString(), "0");
    EXPECT_EQ (Channels (0).getDescription(), "0");
    EXPECT_EQ (Channels (3).toString(), "right | left");
}

TEST_F (EnumerationTest, FlagsLoadFromNumbers)
{
    Permissions permissions;
    EXPECT_TRUE (loadFromState (permissions, std::make_shared<State> (6)).result);
    EXPECT_EQ (permissions.get(), 6);
}

TEST_F (EnumerationTest, TheBareClassIsANumber)
{
    Enumeration bare (42);
    EXPECT_EQ (bare.toString(), "42");
    EXPECT_EQ (bare.getDescription(), "42");
    EXPECT_TRUE (bare.isValueValid());
    EXPECT_EQ (bare.makeState (false)->toShortString(), "42");
    Enumeration target;
    EXPECT_TRUE (saveAndLoad (bare, target).result);
    EXPECT_EQ (target.get(), 42);
}

TEST_F (EnumerationTest, ComparesAndCopiesTheValue)
{
    Interpolation a (Interpolation::linear), b;
    EXPECT_FALSE (a.equals (b));
    a.convertToObject (b);
    EXPECT_TRUE (a.equals (b));
    EXPECT_FALSE (a.equals (Permissions (Permissions::read)));
}

TEST_F (EnumerationTest, ElementsAreDeclaredAgainAfterReinitialisation)
{
    Interpolation::staticClass.deinitializeClass();
    Interpolation::staticClass.initializeClass();
    EXPECT_EQ (Interpolation::staticClass.getNumElements(), 3u);
}

TEST_F (EnumerationTest, TheGeneratorMakesAnEnumerationOfTheNames)
{
    auto arguments = std::make_shared<State>();
    for (auto name : { "low", "medium", "high" })
        arguments->addVariable (std::make_shared<State> (createAtomicClassExpression (name)));
    juce::String error;
    Class* generated = ClassRegistry::getInstance()->resolve (createTemplateClassExpression ("Enumeration", arguments), &error);
    ASSERT_NE (generated, nullptr) << error;
    EXPECT_TRUE (generated->inheritsFrom (&Enumeration::staticClass));
    EXPECT_EQ (generated->getName(), "Enumeration({low, medium, high})");

    auto* elements = dynamic_cast<EnumerationClass*> (generated);
    ASSERT_NE (elements, nullptr);
    ASSERT_EQ (elements->getNumElements(), 3u);
    EXPECT_EQ (elements->getElementName (0), "low");
    EXPECT_EQ (elements->getElementName (2), "high");
    EXPECT_EQ (elements->getElementValue (2), 2);

    Owned<Enumeration> level (static_cast<Enumeration*> (generated->createObject (nullptr)));
    ASSERT_NE (level, nullptr);
    EXPECT_EQ (level->getClass(), generated);
    EXPECT_TRUE (loadFromState (*level, std::make_shared<State> ("high")).result);
    EXPECT_EQ (level->get(), 2);
    EXPECT_EQ (level->toString(), "high");
    EXPECT_EQ (level->makeState (false)->toShortString(), "\"high\"");
}

TEST_F (EnumerationTest, TheGeneratorNeedsAList)
{
    juce::String error;
    auto argument = std::make_shared<State> (createAtomicClassExpression ("low"));
    EXPECT_EQ (ClassRegistry::getInstance()->resolve (createTemplateClassExpression ("Enumeration", argument), &error), nullptr);
    EXPECT_TRUE (error.startsWith ("Wrong type: expected variables, found classExpression")) << error;
}

TEST_F (EnumerationTest, TheGeneratorAnswersToItsName)
{
    Class* generated = getClass ("Enumeration({a, b, c})");
    ASSERT_NE (generated, nullptr);
    EXPECT_EQ (getClass ("Enumeration({a,b,c})"), generated);
    auto* elements = dynamic_cast<EnumerationClass*> (generated);
    ASSERT_NE (elements, nullptr);
    ASSERT_EQ (elements->getNumElements(), 3u);
    EXPECT_EQ (elements->getElementName (1), "b");
    EXPECT_EQ (elements->getElementValue (1), 1);
    EXPECT_EQ (elements->getElementFriendlyName (2), "C");
    EXPECT_EQ (generated->getBaseClass(), &Enumeration::staticClass);
    EXPECT_EQ (generated->getFriendlyName(), MemberSignature::makeFriendlyNameFromName ("Enumeration({a, b, c})", true));
}

TEST_F (EnumerationTest, AGeneratedElementIsNamedByItsStateText)
{
    Class* generated = getClass ("Enumeration({\"two words\", 7})");
    ASSERT_NE (generated, nullptr);
    auto* elements = dynamic_cast<EnumerationClass*> (generated);
    ASSERT_EQ (elements->getNumElements(), 2u);
    EXPECT_EQ (elements->getElementName (0), "\"two words\"");
    EXPECT_EQ (elements->getElementName (1), "7");
}

TEST_F (EnumerationTest, AGeneratedEnumerationSavesByNameInAStateText)
{
    Class* generated = getClass ("Enumeration({low, medium, high})");
    ASSERT_NE (generated, nullptr);
    Owned<Object> level (generated->createObject (nullptr));
    ASSERT_NE (level, nullptr);
    static_cast<Enumeration*> (level.get())->set (1);
    const juce::String text = level->makeState (false, true)->saveToString();
    EXPECT_EQ (text, "'Enumeration({low, medium, high}) \"medium\"\n");

    juce::String messages;
    ToStringExecutionContext context (messages);
    auto state = State::createFromStateString (context, text, "test");
    ASSERT_NE (state, nullptr) << messages;
    Owned<Object> loaded (Object::createFromState (context, state));
    ASSERT_NE (loaded, nullptr) << messages;
    EXPECT_EQ (loaded->getClass(), generated);
    EXPECT_EQ (loaded->toString(), "medium");
}
