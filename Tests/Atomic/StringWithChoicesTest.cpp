#include "AtomicTestSupport.h"

using namespace tov;
using namespace tov::test;

namespace
{
Owned<StringWithChoices> makeColour()
{
    auto colour = createOwned<StringWithChoices>();
    colour->setChoices (juce::StringArray { "red", "green", "blue" });
    colour->set ("green");
    return colour;
}
}

TEST (StringWithChoicesTest, FindsChoicesExactly)
{
    auto colour = makeColour();
    EXPECT_EQ (colour->findChoiceIndex ("blue"), 2);
    EXPECT_EQ (colour->findChoiceIndex ("Blue"), -1);
    EXPECT_EQ (colour->getIndexInChoices(), 1);
    colour->set ("purple");
    EXPECT_EQ (colour->getIndexInChoices(), -1);
}

TEST (StringWithChoicesTest, SetChoicesNotifiesOnAChange)
{
    StringWithChoices text;
    ChangeCounter counter (text);
    text.setChoices (std::vector<juce::String> { "x" });
    text.setChoices (juce::StringArray { "x" });
    text.setChoices (juce::StringArray { "x", "y" }, false);
    EXPECT_EQ (counter.count, 1);
    EXPECT_EQ (text.getChoices().size(), 2u);
}

TEST (StringWithChoicesTest, WithoutIdentifierOnlyTheTextIsSaved)
{
    auto colour = makeColour();
    EXPECT_TRUE (colour->getUniqueIdentifier().isNull());
    auto state = colour->makeState (false);
    EXPECT_EQ (state->getType(), StateType::stringType);
    EXPECT_EQ (state->toShortString(), "\"green\"");
}

TEST (StringWithChoicesTest, WithAnIdentifierTheChoicesAreSaved)
{
    auto colour = makeColour();
    colour->setUniqueIdentifier (UniqueIdentifier (0x51));
    EXPECT_EQ (colour->makeState (false)->toShortString(), "{value = \"green\", choices = {\"red\", \"green\", \"blue\"}}");
    EXPECT_EQ (StateObjectExporter::make (*colour, exportWithoutIdentifiers, false)->toShortString(), "\"green\"");
}

TEST (StringWithChoicesTest, TransientExportSavesTheChoices)
{
    auto colour = makeColour();
    EXPECT_EQ (StateObjectExporter::make (*colour, exportTransientVariables, false)->toShortString(),
               "{value = \"green\", choices = {\"red\", \"green\", \"blue\"}}");
}

TEST (StringWithChoicesTest, WithoutChoicesOnlyTheTextIsSaved)
{
    StringWithChoices text ("alone");
    text.setUniqueIdentifier (UniqueIdentifier (0x52));
    EXPECT_EQ (StateObjectExporter::make (text, exportTransientVariables, false)->toShortString(), "\"alone\"");
}

TEST (StringWithChoicesTest, LoadsTextAndChoicesWithOneChange)
{
    auto source = makeColour();
    auto target = createOwned<StringWithChoices>();
    ChangeCounter counter (*target);
    EXPECT_TRUE (saveAndLoad (*source, *target, exportTransientVariables).result);
    EXPECT_EQ (counter.count, 1);
    EXPECT_TRUE (target->equals (*source));
    EXPECT_TRUE (saveAndLoad (*source, *target, exportTransientVariables).result);
    EXPECT_EQ (counter.count, 1);
}

TEST (StringWithChoicesTest, LoadingAPlainTextKeepsTheChoices)
{
    auto colour = makeColour();
    EXPECT_TRUE (loadFromState (*colour, std::make_shared<State> ("blue")).result);
    EXPECT_EQ (colour->get(), "blue");
    EXPECT_EQ (colour->getChoices().size(), 3u);
}

TEST (StringWithChoicesTest, LoadWarnsOfUnknownVariables)
{
    StringWithChoices text;
    auto state = std::make_shared<State>();
    state->addVariable ("value", std::make_shared<State> ("x"));
    state->addVariable ("shade", std::make_shared<State> ("dark"));
    const auto outcome = loadFromState (text, state);
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "Warning: Unknown variable shade in StringWithChoices (in ObjectImporter::sendUnknownVariableWarning)\n");
    EXPECT_EQ (text.get(), "x");
}

TEST (StringWithChoicesTest, ConvertsFromAnotherByItsText)
{
    auto colour = makeColour();
    StringWithChoices other;
    other.convertFrom (*colour);
    EXPECT_EQ (other.get(), "green");
    EXPECT_TRUE (other.getChoices().empty());
}

TEST (StringWithChoicesTest, ComparesTextAndChoices)
{
    auto a = makeColour();
    auto b = makeColour();
    EXPECT_TRUE (a->equals (*b));
    b->setChoices (juce::StringArray { "red" });
    EXPECT_FALSE (a->equals (*b));
    a->copyTo (*b);
    EXPECT_TRUE (a->equals (*b));
}

TEST (StringWithChoicesTest, ConfigurableStringIsAbstract)
{
    EXPECT_TRUE (ConfigurableString::staticClass.isAbstract());
    EXPECT_EQ (ConfigurableString::staticClass.createObject (nullptr), nullptr);
}
