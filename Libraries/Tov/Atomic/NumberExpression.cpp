#include "NumberExpression.h"

namespace tov
{

static std::vector<juce::juce_wchar> toCharacters (const juce::String& text)
{
    std::vector<juce::juce_wchar> result;
    for (auto p = text.getCharPointer(); ! p.isEmpty();)
        result.push_back (p.getAndAdvance());
    return result;
}

static juce::String fromCharacters (const std::vector<juce::juce_wchar>& characters, size_t start, size_t end)
{
    juce::String result;
    result.preallocateBytes (end - start);
    for (size_t i = start; i < end; ++i)
        result += juce::String::charToString (characters[i]);
    return result;
}

juce::String NumberExpression::evaluate (const juce::String& expression, juce::String& error)
{
    const auto characters = toCharacters (expression.removeCharacters (" \t"));
    return NumberExpression (characters, 0, characters.size(), &expression, error).run();
}

NumberExpression::NumberExpression (const Characters& characters, size_t begin, size_t end, const juce::String* input, juce::String& error)
    : characters (characters), begin (begin), end (end), input (input), error (error)
{
}

juce::String NumberExpression::getInput() const
{
    return input != nullptr ? *input : fromCharacters (characters, begin, end);
}

bool NumberExpression::isOperator (juce::juce_wchar c) noexcept
{
    return c == '+' || c == '-' || c == '*' || c == '/';
}

bool NumberExpression::isDigit (juce::juce_wchar c) noexcept
{
    return (c >= '0' && c <= '9') || c == '.';
}

//==============================================================================
juce::String NumberExpression::run()
{
    for (size_t index = begin; index < end; ++index)
    {
        const juce::juce_wchar c = characters[index];
        Outcome outcome;
        if (isOperator (c))
            outcome = scanOperator (index);
        else if (isDigit (c))
            outcome = scanDigit (index);
        else if (c == '(' && number.isEmpty())
            outcome = scanParenthesis (index);
        else
            outcome = scanOther (index);

        if (outcome == Outcome::failed)
            return {};
        if (outcome == Outcome::unchanged)
            return getInput();
        if (outcome == Outcome::stop)
            break;
    }

    tokens.add (number);
    fold ("*/");
    fold ("+-");
    return tokens[0] + suffix;
}

NumberExpression::Outcome NumberExpression::scanOperator (size_t& index)
{
    const juce::juce_wchar c = characters[index];
    const bool digitFollows = index + 1 < end && isDigit (characters[index + 1]);
    if (number.isEmpty() && (c == '+' || c == '-') && digitFollows)
    {
        number += juce::String::charToString (c);
        return Outcome::carryOn;
    }
    if (number.isEmpty())
        return fail ("unexcepted operator '" + juce::String::charToString (c) + "'");

    tokens.add (number);
    tokens.add (juce::String::charToString (c));
    number.clear();
    parenthesisJustClosed = false;
    return Outcome::carryOn;
}

NumberExpression::Outcome NumberExpression::scanDigit (size_t index)
{
    const juce::juce_wchar c = characters[index];
    // A second dot makes no number of this grammar: dotted times and versions stay as typed.
    if (c == '.' && number.containsChar ('.'))
        return Outcome::unchanged;
    if (parenthesisJustClosed)
        return fail ("unexcepted token '" + juce::String::charToString (c) + "'");
    number += juce::String::charToString (c);
    return Outcome::carryOn;
}

NumberExpression::Outcome NumberExpression::scanParenthesis (size_t& index)
{
    size_t closing = index + 1;
    for (int depth = 1; closing < end; ++closing)
    {
        if (characters[closing] == '(')
            ++depth;
        else if (characters[closing] == ')' && --depth == 0)
            break;
    }
    if (closing >= end)
        return fail ("missing closing parenthesis");

    juce::String innerError;
    const juce::String result = NumberExpression (characters, index + 1, closing, nullptr, innerError).run();
    if (innerError.isNotEmpty())
        return fail (innerError);

    number = result;
    parenthesisJustClosed = true;
    index = closing;
    return Outcome::carryOn;
}

NumberExpression::Outcome NumberExpression::scanOther (size_t index)
{
    // Units and other words after a number are kept for the caller; after an operator they make no sense.
    if (index == begin || number.isNotEmpty())
    {
        suffix = fromCharacters (characters, index, end);
        return Outcome::stop;
    }
    return fail ("unexcepted token '" + juce::String::charToString (characters[index]) + "'");
}

NumberExpression::Outcome NumberExpression::fail (const juce::String& message)
{
    error = message;
    return Outcome::failed;
}

//==============================================================================
void NumberExpression::fold (const juce::String& operators)
{
    for (int i = 1; i + 1 < tokens.size();)
    {
        const juce::String& operation = tokens[i];
        if (operation.length() == 1 && operators.containsChar (operation[0]))
        {
            const double value = apply (operation[0], readNumber (tokens[i - 1]), readNumber (tokens[i + 1]));
            tokens.set (i - 1, juce::String (value));
            tokens.removeRange (i, 2);
        }
        else
        {
            i += 2;
        }
    }
}

// juce::String::getDoubleValue, except that exponents of more than nine digits are cut to
// 999999999: JUCE's reader would overflow an int on them, and they give infinity or zero anyway.
// Digits after an "e" are never part of the mantissa, so cutting them changes nothing else.
double NumberExpression::readNumber (const juce::String& token)
{
    if (! token.containsAnyOf ("eE"))
        return token.getDoubleValue();

    juce::String capped;
    auto p = token.getCharPointer();
    while (! p.isEmpty())
    {
        const juce::juce_wchar c = p.getAndAdvance();
        capped += juce::String::charToString (c);
        if (c != 'e' && c != 'E')
            continue;
        if (*p == '+' || *p == '-')
            capped += juce::String::charToString (p.getAndAdvance());
        while (*p == '0')
            capped += juce::String::charToString (p.getAndAdvance());
        int digits = 0;
        for (; p.isDigit(); ++p)
            if (++digits <= 9)
                capped += juce::String::charToString (*p);
        if (digits > 9)
            capped = capped.dropLastCharacters (9) + "999999999";
    }
    return capped.getDoubleValue();
}

double NumberExpression::apply (juce::juce_wchar operation, double left, double right)
{
    switch (operation)
    {
        case '*': return left * right;
        case '/': return left / right;
        case '+': return left + right;
        default:  return left - right;
    }
}

} // namespace tov
