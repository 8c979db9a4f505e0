#include "AtomicTestSupport.h"

using namespace tov;

namespace
{
struct Evaluation
{
    juce::String result;
    juce::String error;
};

Evaluation evaluate (const juce::String& expression)
{
    Evaluation evaluation;
    evaluation.result = Number::evaluateNumberExpression (expression, evaluation.error);
    return evaluation;
}

void expectResult (const juce::String& expression, const juce::String& expected)
{
    const auto evaluation = evaluate (expression);
    EXPECT_EQ (evaluation.result, expected) << expression;
    EXPECT_EQ (evaluation.error, "") << expression;
}

void expectError (const juce::String& expression, const juce::String& expected)
{
    const auto evaluation = evaluate (expression);
    EXPECT_EQ (evaluation.result, "") << expression;
    EXPECT_EQ (evaluation.error, expected) << expression;
}
}

TEST (NumberExpressionTest, MultiplicationsComeBeforeAdditions)
{
    expectResult ("1+2*3", juce::String (7.0));
    expectResult ("1+2*3", "7");
    expectResult ("10-4/2", "8");
    expectResult ("2*3+4*5", "26");
}

TEST (NumberExpressionTest, ParenthesesComeFirst)
{
    expectResult ("(1+2)*3", juce::String (9.0));
    expectResult ("(1+2)*3", "9");
    expectResult ("2*(3+(4-1))", "12");
}

TEST (NumberExpressionTest, OperationsFoldFromLeftToRight)
{
    expectResult ("10-2-3", "5");
    expectResult ("64/4/2", "8");
    expectResult ("1.5*4", "6");
    expectResult ("1/3", juce::String (1.0 / 3.0));
}

TEST (NumberExpressionTest, BlanksAndTabsAreRemoved)
{
    expectResult (" 1 +\t2 ", "3");
}

TEST (NumberExpressionTest, ANumberAloneStaysAsTyped)
{
    expectResult ("5", "5");
    expectResult ("5.50", "5.50");
    expectResult ("-5", "-5");
    expectResult (".5", ".5");
    expectResult ("", "");
}

TEST (NumberExpressionTest, SignsJoinTheNumberThatFollows)
{
    expectResult ("-2*3", "-6");
    expectResult ("2*-3", "-6");
    expectResult ("+2+-3", "-1");
}

TEST (NumberExpressionTest, ASuffixSurvives)
{
    expectResult ("2 km", "2km");
    expectResult ("1+1 km", "2km");
    expectResult ("(2)m", "2m");
    expectResult ("km", "km");
    expectResult ("1e5", "1e5");
}

TEST (NumberExpressionTest, TwoDotsInANumberLeaveTheInputUnchanged)
{
    expectResult ("1.2.3", "1.2.3");
    expectResult ("1 + 1.2.3", "1 + 1.2.3");
}

TEST (NumberExpressionTest, AMissingOperandReadsAsZero)
{
    expectResult ("1+", "1");
    expectResult ("3*", "0");
}

TEST (NumberExpressionTest, DivisionByZeroGivesJuceInfinityText)
{
    expectResult ("1/0", juce::String (std::numeric_limits<double>::infinity()));
}

TEST (NumberExpressionTest, AnOperatorWithoutNumberFails)
{
    expectError ("*3", "unexcepted operator '*'");
    expectError ("1+*3", "unexcepted operator '*'");
    expectError ("--3", "unexcepted operator '-'");
    expectError ("-(2)", "unexcepted operator '-'");
}

TEST (NumberExpressionTest, AnUnclosedParenthesisFails)
{
    expectError ("1+(2", "missing closing parenthesis");
    expectError ("((1)", "missing closing parenthesis");
}

TEST (NumberExpressionTest, AWordAfterAnOperatorFails)
{
    expectError ("1+a", "unexcepted token 'a'");
}

TEST (NumberExpressionTest, ADigitAfterAParenthesisFails)
{
    expectError ("(1)2", "unexcepted token '2'");
}

TEST (NumberExpressionTest, ErrorsInsideParenthesesPassOn)
{
    expectError ("2*(1+a)", "unexcepted token 'a'");
    expectError ("(*1)", "unexcepted operator '*'");
}

TEST (NumberExpressionTest, DeepNestingIsEvaluated)
{
    const int depth = 500;
    const juce::String expression = juce::String::repeatedString ("(", depth) + "1+1" + juce::String::repeatedString (")", depth);
    expectResult (expression, "2");
}

TEST (NumberExpressionTest, HugeExponentsGiveInfinityOrZero)
{
    const juce::String infinity (std::numeric_limits<double>::infinity());
    expectResult ("(9e5444444444444444)+1", infinity);
    expectResult ("(9e-5444444444444444)+1", "1");
    expectResult ("(9e0000000000000000002)+1", "901");
    expectResult ("(2e3)*2", "4000");
}
