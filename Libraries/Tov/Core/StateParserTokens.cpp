#include "StateParserTokens.h"
#include "../Standard/ExecutionContext.h"
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <locale.h>
#include <string>
#if defined (__SSE2__)
 #include <emmintrin.h>
#endif

namespace tov
{

// std::from_chars reads the same prefix as the C conversion, correctly rounded
// as strtod is, without copying the token; it takes no leading "+" and leaves
// values out of range alone, and those go to strtod.
double readDecimalPrefix (const char* start, size_t length)
{
    double value = 0;
    if (std::from_chars (start, start + length, value).ec == std::errc())
        return value;

    const std::string bytes (start, length);
   #if JUCE_WINDOWS
    static const _locale_t cLocale = _create_locale (LC_NUMERIC, "C");
    return _strtod_l (bytes.c_str(), nullptr, cLocale);
   #else
    static const locale_t cLocale = newlocale (LC_NUMERIC_MASK, "C", (locale_t) nullptr);
    return strtod_l (bytes.c_str(), nullptr, cLocale);
   #endif
}

// Without a backslash there is nothing to unescape.
juce::String StateParser::Token::toString() const
{
    const auto bytes = juce::String::fromUTF8 (start, (int) length);
    if (! escaped || std::memchr (start, '\\', length) == nullptr)
        return bytes;
    return bytes.replace ("\\\\", "\\").replace ("\\\"", "\"");
}

const ClassExpression* StateParser::getAtomicExpression (const Token& name)
{
    return atomicExpressions.get (name.start, name.length, [&] { return createAtomicClassExpression (name.toString()); });
}

//==============================================================================
// Rules that fail give their position back, so the same white space is often
// skipped several times: the last skip is kept. Indentation is passed sixteen
// blanks at a time where the processor compares them at once.
size_t StateParser::skipWhiteSpaceRun (size_t start) const noexcept
{
    if (start == lastSkip.from)
        return lastSkip.to;
    size_t end = skipBlanks (start + 1);
    while (end < length && isWhiteSpace (text[end]))
        end = skipBlanks (end + 1);
    lastSkip = { start, end };
    return end;
}

size_t StateParser::skipBlanks (size_t from) const noexcept
{
   #if defined (__SSE2__)
    const __m128i blanks = _mm_set1_epi8 (' ');
    for (; length - from >= 16; from += 16)
    {
        const auto equal = (unsigned) _mm_movemask_epi8 (_mm_cmpeq_epi8 (_mm_loadu_si128 ((const __m128i*) (text + from)), blanks));
        if (equal != 0xffff)
            return from + (size_t) __builtin_ctz (~equal);
    }
   #endif
    while (length - from >= sizeof (uint64_t) && juce::readUnaligned<uint64_t> (text + from) == 0x2020202020202020ull)
        from += sizeof (uint64_t);
    while (from < length && text[from] == ' ')
        ++from;
    return from;
}

// A quote ends the string unless an odd number of backslashes stands right
// before it; the opening quote stops the count.
bool StateParser::scanQuotedString (size_t from, Token& token, size_t& next) const
{
    const size_t start = skipWhiteSpaceFrom (from);
    if (start >= length || text[start] != '"')
        return false;

    for (size_t end = start + 1; end < length; ++end)
    {
        const auto* quote = static_cast<const char*> (std::memchr (text + end, '"', length - end));
        if (quote == nullptr)
            return false;
        end = (size_t) (quote - text);
        size_t backslashes = 0;
        while (text[end - 1 - backslashes] == '\\')
            ++backslashes;
        if (backslashes % 2 == 0)
        {
            token = { text + start + 1, end - start - 1, true };
            next = skipWhiteSpaceFrom (end + 1);
            return true;
        }
    }
    return false;
}

//==============================================================================
// One report per parse, the innermost failure; nothing once the callback has stopped the parse.
void StateParser::report (const juce::String& message)
{
    if (aborted || errorReported)
        return;
    errorReported = true;
    context.error (getPositionReport() + " => " + message);
}

// The line counter of the reading turns on arrival at a line feed, so the
// column of the first byte of a line is 1 except on the first line, where it
// is 0. Both follow from the position alone, and are worked out only for a report.
void StateParser::getLineAndColumn (uint32_t& line, uint32_t& column) const noexcept
{
    size_t lastLineFeed = 0;
    line = 0;
    for (size_t i = 1; i <= position && i < length; ++i)
    {
        if (text[i] == '\n')
        {
            ++line;
            lastLineFeed = i;
        }
    }
    column = (uint32_t) (position - lastLineFeed);
}

// The reported column makes up for the counter's start on the first line.
juce::String StateParser::getPositionReport() const
{
    uint32_t line, column;
    getLineAndColumn (line, column);
    size_t lineStart = 0;
    int reportedColumn = (int) column;
    for (size_t i = position; i > 0; --i)
    {
        if (text[i - 1] == '\n')
        {
            lineStart = i;
            reportedColumn = (int) (column - 1);
            break;
        }
    }

    const size_t beforeEnd = std::min (length, lineStart + (size_t) std::max (0, reportedColumn));
    size_t afterEnd = beforeEnd;
    while (afterEnd < length && text[afterEnd] != '\n')
        ++afterEnd;

    return "Stream: " + source
         + "\nLine: " + juce::String ((int) line)
         + "\nColumn: " + juce::String (reportedColumn)
         + "\nEntire line in question: " + juce::String::fromUTF8 (text + lineStart, (int) (beforeEnd - lineStart))
         + "[*Here*] " + juce::String::fromUTF8 (text + beforeEnd, (int) (afterEnd - beforeEnd))
         + "\n";
}

} // namespace tov
