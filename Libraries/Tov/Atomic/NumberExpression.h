#pragma once

#include <juce_core/juce_core.h>
#include <vector>

namespace tov
{

/** The small evaluator behind Number::evaluateNumberExpression.

    It knows the four operators, signs, parentheses and decimal numbers, and
    keeps whatever follows the last number as a suffix, so that "2 km" stays
    "2km" for the caller to interpret. Text that holds a number with two
    dots, such as a time code, comes back unchanged.
*/
class NumberExpression
{
public:
    /** The result as juce::String (double) text followed by the suffix; empty with error set on failure. */
    static juce::String evaluate (const juce::String& expression, juce::String& error);

private:
    using Characters = std::vector<juce::juce_wchar>;

    // Inner levels work on a part of the characters of the whole expression, without copies.
    const Characters& characters;
    const size_t begin, end;
    /** The text given back unchanged; null inside parentheses, where it is the inside. */
    const juce::String* input;
    juce::String& error;
    juce::StringArray tokens;
    juce::String number;
    juce::String suffix;
    bool parenthesisJustClosed = false;

    NumberExpression (const Characters& characters, size_t begin, size_t end, const juce::String* input, juce::String& error);

    enum class Outcome { carryOn, stop, unchanged, failed };

    juce::String run();
    Outcome scanOperator (size_t& index);
    Outcome scanDigit (size_t index);
    Outcome scanParenthesis (size_t& index);
    Outcome scanOther (size_t index);
    Outcome fail (const juce::String& message);
    juce::String getInput() const;

    void fold (const juce::String& operators);
    static double readNumber (const juce::String& token);
    static double apply (juce::juce_wchar operation, double left, double right);
    static bool isOperator (juce::juce_wchar c) noexcept;
    static bool isDigit (juce::juce_wchar c) noexcept;
};

} // namespace tov
