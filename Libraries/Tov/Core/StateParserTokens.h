#pragma once

// Tokens of State texts, for the two readers of StateParser (the rules and the
// plain-text reader), which include this header and nothing else includes.
//
// What both readers call for every byte or token is defined here, so that
// each reader's file compiles it into its own code, as the single file of both
// once did. The checks and conversions of tokens have internal linkage: each
// reader's file keeps its own copy and calls it directly.

#include "StateParser.h"
#include "ClassExpression.h"
#include <cstdint>
#include <limits>

namespace tov
{

/** The C conversion of a decimal floating-point prefix of a token, whatever the
    process's locale says the decimal point is (StateParserTokens.cpp).
*/
double readDecimalPrefix (const char* start, size_t length);

namespace
{
    // Most functions here are inline, and fold into their callers. Five are
    // not: readIntegerToken, readBooleanToken, isClassNameToken, readShortNumber
    // and readRealToken. The compiler keeps them out of line, called once per
    // token, which leaves the plain-text reader's functions small enough to
    // fold into each other; inline, they make those functions too large for
    // that, and the 20 MB parse of the State benchmark takes about 5% longer.
    // StateParserTokens.cpp uses none of them, hence [[maybe_unused]].

    /** Which bytes end a token, looked up rather than searched for. */
    struct SeparatorTable
    {
        constexpr explicit SeparatorTable (const char* separators)
        {
            for (; *separators != 0; ++separators)
                isSeparator[(uint8_t) *separators] = true;
        }

        bool isSeparator[256] = {};
    };

    // Word separators end every token but identifiers and versions, which end at
    // prefix separators: tab, "=", ":" and the brackets do not end them.
    constexpr SeparatorTable wordSeparators (" ,{}():=\t\r\n}][");
    constexpr SeparatorTable prefixSeparators (" ,{\r\n}");

    // Tab, line feed, carriage return and space, as bits of one word.
    inline bool isWhiteSpace (char byte) noexcept
    {
        constexpr uint64_t whiteSpaceBits = (1ull << 9) | (1ull << 10) | (1ull << 13) | (1ull << 32);
        return (uint8_t) byte <= 32 && ((whiteSpaceBits >> (uint8_t) byte) & 1) != 0;
    }

    inline bool isDecimalDigit (char byte) noexcept
    {
        return byte >= '0' && byte <= '9';
    }

    // The ASCII letters only, as juce::CharacterFunctions has them for a char.
    inline bool isLetter (char byte) noexcept
    {
        return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
    }

    inline bool isLetterOrDigit (char byte) noexcept
    {
        return isLetter (byte) || isDecimalDigit (byte);
    }

    inline bool isLowerCaseHexadecimalDigit (char byte) noexcept
    {
        return isDecimalDigit (byte) || (byte >= 'a' && byte <= 'f');
    }

    template <class Predicate>
    bool allBytesAre (const char* start, size_t length, Predicate predicate)
    {
        for (size_t i = 0; i < length; ++i)
            if (! predicate (start[i]))
                return false;
        return true;
    }

    // Only "0123456789.-+e", with exactly one ".", at most one "e", two "-" and two "+".
    inline bool isRealToken (const char* start, size_t length) noexcept
    {
        size_t points = 0, exponents = 0, minusSigns = 0, plusSigns = 0;
        for (size_t i = 0; i < length; ++i)
        {
            switch (start[i])
            {
                case '.': ++points; break;
                case 'e': ++exponents; break;
                case '-': ++minusSigns; break;
                case '+': ++plusSigns; break;
                default:  if (! isDecimalDigit (start[i])) return false; break;
            }
        }
        return points == 1 && exponents <= 1 && minusSigns <= 2 && plusSigns <= 2;
    }

    // Too long a digit string wraps around modulo 2^64, as unsigned arithmetic
    // does; no range error is reported.
    inline uint64_t decimalToUnsigned (const char* digits, size_t length)
    {
        uint64_t value = 0;
        for (size_t i = 0; i < length; ++i)
            value = value * 10 + (uint64_t) (digits[i] - '0');
        return value;
    }

    // The text holds no zero byte, so a shorter word differs at its terminator.
    inline bool isWord (const char* start, size_t length, const char* word) noexcept
    {
        for (size_t i = 0; i < length; ++i)
            if (start[i] != word[i])
                return false;
        return word[length] == 0;
    }

    // "-" then digits, or digits alone; a lone "-" and the empty token read as 0.
    [[maybe_unused]] bool readIntegerToken (const char* start, size_t length, int64_t& value) noexcept
    {
        const bool negative = length > 0 && start[0] == '-';
        const char* digits = start + (negative ? 1 : 0);
        const size_t numDigits = length - (negative ? 1 : 0);
        if (! allBytesAre (digits, numDigits, isDecimalDigit))
            return false;
        const uint64_t magnitude = decimalToUnsigned (digits, numDigits);
        value = (int64_t) (negative ? 0 - magnitude : magnitude);
        return true;
    }

    [[maybe_unused]] bool readBooleanToken (const char* start, size_t length, bool& value) noexcept
    {
        value = isWord (start, length, "true") || isWord (start, length, "True");
        return value || isWord (start, length, "false") || isWord (start, length, "False");
    }

    inline bool isIdentifierToken (const char* start, size_t length) noexcept
    {
        return length >= 2 && start[0] == '@' && allBytesAre (start + 1, length - 1, isLowerCaseHexadecimalDigit);
    }

    // The hexadecimal digits after the "@" of an identifier token; more than
    // sixteen keep the last sixteen, as juce::String::getHexValue64 does.
    inline uint64_t readIdentifierToken (const char* start, size_t length) noexcept
    {
        uint64_t value = 0;
        for (size_t i = 1; i < length; ++i)
            value = (value << 4) | (uint64_t) (isDecimalDigit (start[i]) ? start[i] - '0' : start[i] - 'a' + 10);
        return value;
    }

    inline bool isVersionToken (const char* start, size_t length) noexcept
    {
        return length >= 1 && start[0] == '#' && allBytesAre (start + 1, length - 1, isDecimalDigit);
    }

    // A letter, digit or "_", then letters and digits only.
    inline bool isNameToken (const char* start, size_t length) noexcept
    {
        return length > 0 && (isLetterOrDigit (start[0]) || start[0] == '_') && allBytesAre (start + 1, length - 1, isLetterOrDigit);
    }

    // A letter first, and none of the words that stand for values.
    [[maybe_unused]] bool isClassNameToken (const char* start, size_t length) noexcept
    {
        return length > 0 && isLetter (start[0])
            && ! isWord (start, length, "nil") && ! isWord (start, length, "void")
            && ! isWord (start, length, "true") && ! isWord (start, length, "false");
    }

    enum class ShortNumber { none, integer, real };

    // A "-" perhaps, then digits alone, an integer (wrapping as
    // decimalToUnsigned does), or digits around one point and at most 15
    // digits in all, as most reals are written: the digits and the power of
    // ten are both exact doubles, so their quotient is the correctly rounded
    // value of the text (Clinger's fast path). One pass for both, since the
    // rules try the integer first and then the real.
    [[maybe_unused]] ShortNumber readShortNumber (const char* start, size_t length, int64_t& integer, double& real) noexcept
    {
        static constexpr double powersOfTen[] = { 1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11,
                                                  1e12, 1e13, 1e14, 1e15 };
        constexpr int maximumDigits = 15;
        const bool negative = length > 0 && start[0] == '-';
        uint64_t digits = 0;
        int numDigits = 0, numDecimals = 0;
        bool point = false;
        for (size_t i = negative ? 1 : 0; i < length; ++i)
        {
            if (isDecimalDigit (start[i]))
            {
                digits = digits * 10 + (uint64_t) (start[i] - '0');
                ++numDigits;
                numDecimals += point ? 1 : 0;
            }
            else if (start[i] == '.' && ! point)
                point = true;
            else
                return ShortNumber::none;
        }
        if (! point)
        {
            integer = (int64_t) (negative ? 0 - digits : digits);
            return ShortNumber::integer;
        }
        if (numDigits == 0 || numDigits > maximumDigits)
            return ShortNumber::none;
        real = (double) digits / powersOfTen[numDecimals];
        real = negative ? -real : real;
        return ShortNumber::real;
    }

    inline bool readShortDecimal (const char* start, size_t length, double& value) noexcept
    {
        int64_t integer;
        return readShortNumber (start, length, integer, value) == ShortNumber::real;
    }

    // "+oo" and "-oo" stand for the largest reals.
    [[maybe_unused]] bool readRealToken (const char* start, size_t length, double& value)
    {
        if (readShortDecimal (start, length, value))
            return true;
        if (isWord (start, length, "+oo") || isWord (start, length, "-oo"))
        {
            const double largest = std::numeric_limits<double>::max();
            value = start[0] == '+' ? largest : -largest;
            return true;
        }
        if (! isRealToken (start, length))
            return false;
        value = readDecimalPrefix (start, length);
        return true;
    }
}

//==============================================================================
inline bool StateParser::Token::operator== (const char* literal) const noexcept
{
    return isWord (start, length, literal);
}

inline bool StateParser::Token::operator!= (const char* literal) const noexcept
{
    return ! operator== (literal);
}

inline size_t StateParser::skipWhiteSpaceFrom (size_t start) const noexcept
{
    if (start >= length || ! isWhiteSpace (text[start]))
        return start;
    if (start + 1 >= length || ! isWhiteSpace (text[start + 1]))
        return start + 1;
    return skipWhiteSpaceRun (start);
}

// A token that reaches the end of the text is valid even when it is empty, so a
// rule that starts at the end sees an empty token there. Such a token also
// consumes the end itself: no token can be read after it. That is why an empty
// text reads as the integer 0, while "nil" alone, an identifier, leaves no
// value behind it.
inline bool StateParser::scanToken (size_t from, Separators separators, Token& token, size_t& next) const
{
    const auto& table = separators == Separators::ofWords ? wordSeparators : prefixSeparators;
    const size_t start = skipWhiteSpaceFrom (from);
    size_t end = start;
    while (end < length && ! table.isSeparator[(uint8_t) text[end]])
        ++end;
    if (end == start && end < length)
        return false;

    token = { text + start, end - start, false, end == length };
    next = skipWhiteSpaceFrom (end);
    return true;
}

//==============================================================================
inline juce::String StateParser::getName (const Token& token)
{
    return names.get (token.start, token.length, [&] { return token.toString(); });
}

inline juce::String StateParser::getName (const Token& token, uint32_t hash)
{
    return names.get (token.start, token.length, hash, [&] { return token.toString(); });
}

inline juce::String StateParser::getStringValue (const Token& token)
{
    return shortStrings.get (token.start, token.length, [&] { return token.toString(); });
}

} // namespace tov
