#include "ContainerTestSupport.h"

using namespace tov;
using namespace tov::test;

namespace
{
class OptionTest : public ContainerTest {};

/** Records the variables that an answer depends on. */
struct RecordingDeclarator : VariableDependenciesDeclarator
{
    void add (Object* variable) override             { variables.push_back (variable); }
    std::vector<Object*> variables;
};
} // namespace

TEST_F (OptionTest, ADisabledOptionReadsAsOptional)
{
    Option<Integer> limit;
    limit.getValue()->set (12, false);
    EXPECT_EQ (limit.toString(), "<optional>");
    limit.setEnabled (true);
    EXPECT_EQ (limit.toString(), "12");
}

TEST_F (OptionTest, TheValueOfADisabledOptionIsNotEditableWhileEnableIs)
{
    Owned<Album> album (make<Album>());
    ASSERT_NE (album->limit.getValue(), nullptr);
    EXPECT_FALSE (album->limit.getValue()->isEditable());
    EXPECT_TRUE (album->limit.enable.isEditable());

    RecordingDeclarator declarator;
    EXPECT_FALSE (album->limit.isVariableEditable (album->limit.getValue(), declarator));
    EXPECT_EQ (declarator.variables, (std::vector<Object*> { &album->limit.enable }));

    album->limit.setEnabled (true);
    EXPECT_TRUE (album->limit.getValue()->isEditable());
}

TEST_F (OptionTest, TheGeneratedClassHoldsItsValueAsAMember)
{
    Class* optionClass = Option<Integer>::lookUpTemplateClass();
    ASSERT_NE (optionClass, nullptr);
    EXPECT_EQ (optionClass->getName(), "Option(Integer)");
    EXPECT_EQ (optionClass->getFriendlyName(), Integer::staticClass.getFriendlyName() + " (Optional)");
    EXPECT_TRUE (optionClass->inheritsFrom (&ObjectOption::staticClass));
    ASSERT_EQ (optionClass->getNumMemberVariables(), 2u);
    EXPECT_EQ (optionClass->getMemberVariableSignature (0)->getName(), "enable");
    EXPECT_EQ (optionClass->getMemberVariableSignature (1)->getName(), "value");
    EXPECT_EQ (optionClass->getMemberVariableSignature (1)->getValueClass(), &Integer::staticClass);

    Owned<Object> made (optionClass->createObject());
    auto* option = static_cast<ObjectOption*> (made.get());
    ASSERT_NE (option->getValue(), nullptr);
    EXPECT_EQ (option->getValue()->getClass(), &Integer::staticClass);
    EXPECT_EQ (option->getValue()->getParent(), option);
    EXPECT_TRUE (option->getValue()->hasStaticAllocationFlag());
    EXPECT_EQ (option->getVariableByName ("value"), option->getValue());
    EXPECT_EQ (option->getValue()->getSignature()->getName(), "value");
}

TEST_F (OptionTest, SavesAndLoadsEnableAndValue)
{
    Owned<Album> album (make<Album>());
    album->limit.setEnabled (true, false);
    album->limit.getValue()->set (5, false);
    album->bonus.getValue()->name.set ("hidden", false);
    auto state = album->makeState (true, false);
    EXPECT_EQ (state->saveToString().trimEnd(), "{limit = {enable = true, value = 5}, bonus = {value = {name = \"hidden\"}}}");

    Owned<Album> loaded (make<Album>());
    EXPECT_TRUE (loadFromState (*loaded, state).result);
    EXPECT_TRUE (loaded->limit.isEnabled());
    EXPECT_EQ (loaded->limit.getValue()->get(), 5);
    EXPECT_EQ (loaded->bonus.getValue()->name.get(), "hidden");
    EXPECT_TRUE (loaded->equals (*album));
}

TEST_F (OptionTest, EqualsAndCopyGoThroughEnableAndValue)
{
    Option<Integer> a, b;
    a.getValue()->set (3, false);
    EXPECT_FALSE (a.equals (b));
    a.copyTo (b);
    EXPECT_TRUE (a.equals (b));
    EXPECT_EQ (b.getValue()->get(), 3);
    b.setEnabled (true);
    EXPECT_FALSE (a.equals (b));
}

TEST_F (OptionTest, ConvertsThroughItsValue)
{
    Option<Integer> limit;
    limit.getValue()->set (9, false);
    Integer target;
    EXPECT_TRUE (limit.isConvertibleTo (target));
    limit.convertToObject (target);
    EXPECT_EQ (target.get(), 9);
}

TEST_F (OptionTest, OptionalVariablesAreNotEditableWhileItIsOff)
{
    Owned<Album> album (make<Album>());
    Fog& fog = album->fog;
    EXPECT_EQ (fog.getVariableByName ("enable"), &fog.enable);
    EXPECT_EQ (fog.getVariableByName ("density"), &fog.density);
    EXPECT_FALSE (fog.density.isEditable());
    EXPECT_TRUE (fog.enable.isEditable());

    RecordingDeclarator declarator;
    fog.isVariableEditable (&fog.density, declarator);
    EXPECT_EQ (declarator.variables, (std::vector<Object*> { &fog.enable }));

    fog.setEnabled (true);
    EXPECT_TRUE (fog.density.isEditable());
    EXPECT_TRUE (fog.getEnabled());
}

TEST_F (OptionTest, TheOptionClassItselfHoldsAnObject)
{
    ObjectOption option;
    EXPECT_EQ (option.getValueClass(), &Object::staticClass);
    EXPECT_EQ (option.getClass()->getNumMemberVariables(), 1u);
    EXPECT_EQ (option.toString(), "<optional>");
}
