#include <Tov/Core/ClassExpression.h>
#include <Tov/Core/State.h>
#include <gtest/gtest.h>

using namespace tov;

namespace
{
    const ClassExpression* parse (const juce::String& text, juce::String* error = nullptr)
    {
        return createClassExpressionFromString (text, error);
    }

    juce::String positionReport (int column, const juce::String& before, const juce::String& after)
    {
        return "Stream: Class Expression\nLine: 0\nColumn: " + juce::String (column)
             + "\nEntire line in question: " + before + "[*Here*] " + after + "\n";
    }
}

TEST (ClassExpressionTest, AtomicExpressionsAreInterned)
{
    juce::String error;
    const auto* string = parse ("String", &error);
    ASSERT_NE (string, nullptr);
    EXPECT_EQ (error, "");
    EXPECT_EQ (string, createAtomicClassExpression ("String"));
    EXPECT_EQ (parse ("tov::String"), string);
    EXPECT_EQ (parse ("  String \n"), string);
    EXPECT_EQ (string->getType(), ClassExpression::atomic);
    EXPECT_EQ (string->toString(), "String");
    EXPECT_EQ (string->strip(), "String");
}

TEST (ClassExpressionTest, EmptyTextIsAnError)
{
    juce::String error = "old";
    EXPECT_EQ (parse ("", &error), nullptr);
    EXPECT_EQ (error, "Empty class expression");
}

TEST (ClassExpressionTest, TheWholeTextMustBeConsumed)
{
    juce::String error;
    EXPECT_EQ (parse ("OwnedVector(String)x", &error), nullptr);
    EXPECT_EQ (error, "Could not parse class expression: OwnedVector(String)x");
}

TEST (ClassExpressionTest, ValueWordsAreNoClassNames)
{
    for (auto* word : { "true", "false", "void", "nil" })
    {
        juce::String error;
        EXPECT_EQ (parse (word, &error), nullptr) << word;
        EXPECT_EQ (error, "Could not parse class expression: " + juce::String (word));
    }
    EXPECT_NE (parse ("True"), nullptr);
    EXPECT_EQ (parse ("1abc"), nullptr);
}

TEST (ClassExpressionTest, NoErrorTextIsNeeded)
{
    EXPECT_EQ (parse ("OwnedVector(=)"), nullptr);
    EXPECT_EQ (parse ("", nullptr), nullptr);
}

TEST (ClassExpressionTest, ClassParameterChainsReadFromLeftToRight)
{
    const auto* expression = parse ("A:b:c");
    ASSERT_NE (expression, nullptr);
    EXPECT_EQ (expression->getType(), ClassExpression::classParameter);
    EXPECT_EQ (expression->getIdentifier(), "c");
    const auto* base = expression->getClassParameterExpression();
    ASSERT_NE (base, nullptr);
    EXPECT_EQ (base->getType(), ClassExpression::classParameter);
    EXPECT_EQ (base->getIdentifier(), "b");
    EXPECT_EQ (base->getClassParameterExpression(), createAtomicClassExpression ("A"));
    EXPECT_EQ (expression->toString(), "A:b:c");
    EXPECT_EQ (createClassParameterExpression (base, "c"), expression);
}

TEST (ClassExpressionTest, TemplateWithAClassArgument)
{
    const auto* expression = parse ("OwnedVector(String)");
    ASSERT_NE (expression, nullptr);
    EXPECT_EQ (expression->getType(), ClassExpression::templateApplication);
    EXPECT_EQ (expression->getIdentifier(), "OwnedVector");
    EXPECT_EQ (expression->getClassGeneratorArguments().getType(), StateType::classExpressionType);
    EXPECT_EQ (expression->getClassGeneratorArguments().getClassExpressionValue(), createAtomicClassExpression ("String"));
    EXPECT_EQ (expression->toString(), "OwnedVector(String)");
    EXPECT_EQ (expression->strip(), "StringOwnedVector");
    EXPECT_EQ (parse (expression->toString()), expression);
    EXPECT_EQ (createTemplateClassExpression ("OwnedVector", std::make_shared<State> (createAtomicClassExpression ("String"))), expression);
}

TEST (ClassExpressionTest, TemplateWithAnObjectArgumentKeepsTheOrderOfTheText)
{
    const auto* expression = parse ("Map({value=String,key=Object})");
    ASSERT_NE (expression, nullptr);
    const auto& arguments = expression->getClassGeneratorArguments();
    ASSERT_EQ (arguments.getNumVariables(), 2u);
    EXPECT_EQ (arguments.getVariableName (0), "value");
    EXPECT_EQ (arguments.getVariableName (1), "key");
    EXPECT_EQ (expression->toString(), "Map({value = String, key = Object})");
    EXPECT_EQ (expression->strip(), "StringObjectMap");
    EXPECT_EQ (parse ("Map({value = String, key = Object})"), expression);
    EXPECT_NE (parse ("Map({key=Object,value=String})"), expression);
}

TEST (ClassExpressionTest, SeveralArgumentsFormOneList)
{
    const auto* pair = parse ("Foo(1, 2)");
    ASSERT_NE (pair, nullptr);
    EXPECT_EQ (parse ("Foo({1, 2})"), pair);
    EXPECT_EQ (pair->strip(), "12Foo");
    EXPECT_EQ (parse ("Foo(1)")->strip(), "1Foo");
    EXPECT_EQ (parse ("Foo({a = String, b = 1})")->strip(), "String1Foo");
}

TEST (ClassExpressionTest, NestedTemplates)
{
    const auto* expression = parse ("Converter({source=OwnedPointer(sourcePointed), target=OwnedPointer(targetPointed)})");
    ASSERT_NE (expression, nullptr);
    EXPECT_EQ (expression->toString(), "Converter({source = OwnedPointer(sourcePointed), target = OwnedPointer(targetPointed)})");
    EXPECT_EQ (expression->getClassGeneratorArguments().getVariableStateRef (0).getClassExpressionValue(),
               parse ("OwnedPointer(sourcePointed)"));
}

TEST (ClassExpressionTest, ArgumentErrorsReachTheMessage)
{
    juce::String error;
    EXPECT_EQ (parse ("Foo(=)", &error), nullptr);
    EXPECT_EQ (error, "Error: " + positionReport (4, "Foo(", "=)") + " => Expected a value.\n");
}

TEST (ClassExpressionTest, AWeakPointerCannotEndTheArguments)
{
    // An identifier token ends at blanks, commas and braces only: here it takes the ")".
    juce::String error;
    EXPECT_EQ (parse ("Foo(-> @2a)", &error), nullptr);
    EXPECT_EQ (error, "Error: " + positionReport (4, "Foo(", "-> @2a)") + " => Expected a value.\n");
    EXPECT_NE (parse ("Foo({-> @2a})"), nullptr);
}

TEST (ClassExpressionTest, EqualsComparesStructure)
{
    const ClassExpression first (ClassExpression::atomic, "X"), second (ClassExpression::atomic, "X"), other (ClassExpression::atomic, "Y");
    EXPECT_TRUE (ClassExpression::equals (&first, &second));
    EXPECT_FALSE (ClassExpression::equals (&first, &other));
    EXPECT_TRUE (ClassExpression::equals (nullptr, nullptr));
    EXPECT_FALSE (ClassExpression::equals (&first, nullptr));

    const ClassExpression firstTemplate (ClassExpression::templateApplication, "T", nullptr, std::make_shared<State> ((int64_t) 1));
    const ClassExpression secondTemplate (ClassExpression::templateApplication, "T", nullptr, std::make_shared<State> ((int64_t) 1));
    const ClassExpression thirdTemplate (ClassExpression::templateApplication, "T", nullptr, std::make_shared<State> ((int64_t) 2));
    EXPECT_TRUE (ClassExpression::equals (&firstTemplate, &secondTemplate));
    EXPECT_FALSE (ClassExpression::equals (&firstTemplate, &thirdTemplate));
}

TEST (ClassExpressionTest, NoneType)
{
    const ClassExpression none (ClassExpression::none, {});
    EXPECT_EQ (none.toString(), "<noclass>");
}
