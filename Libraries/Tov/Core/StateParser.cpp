#include "StateParser.h"
#include "WellFormedUtf8.h"
#include "State.h"
#include "StateParserCallback.h"
#include "ClassExpression.h"
#include "../Standard/ExecutionContext.h"
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <locale.h>
#include <string>
#if defined (__SSE2__)
 #include <emmintrin.h>
#endif

namespace tov
{

namespace
{
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

    // Set A ends every token but identifiers and versions, which end at set B:
    // tab, "=", ":" and the brackets do not end them.
    constexpr SeparatorTable separatorTables[] = { SeparatorTable (" ,{}():=\t\r\n}]["), SeparatorTable (" ,{\r\n}") };

    // Tab, line feed, carriage return and space, as bits of one word.
    bool isWhiteSpace (char byte) noexcept
    {
        constexpr uint64_t whiteSpaceBits = (1ull << 9) | (1ull << 10) | (1ull << 13) | (1ull << 32);
        return (uint8_t) byte <= 32 && ((whiteSpaceBits >> (uint8_t) byte) & 1) != 0;
    }

    bool isDecimalDigit (char byte) noexcept
    {
        return byte >= '0' && byte <= '9';
    }

    // The ASCII letters only, as juce::CharacterFunctions has them for a char.
    bool isLetter (char byte) noexcept
    {
        return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
    }

    bool isLetterOrDigit (char byte) noexcept
    {
        return isLetter (byte) || isDecimalDigit (byte);
    }

    bool isLowerCaseHexadecimalDigit (char byte) noexcept
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
    bool isRealToken (const char* start, size_t length) noexcept
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
    uint64_t decimalToUnsigned (const char* digits, size_t length)
    {
        uint64_t value = 0;
        for (size_t i = 0; i < length; ++i)
            value = value * 10 + (uint64_t) (digits[i] - '0');
        return value;
    }

    // The text holds no zero byte, so a shorter word differs at its terminator.
    bool isWord (const char* start, size_t length, const char* word) noexcept
    {
        for (size_t i = 0; i < length; ++i)
            if (start[i] != word[i])
                return false;
        return word[length] == 0;
    }

    // "-" then digits, or digits alone; a lone "-" and the empty token read as 0.
    bool readIntegerToken (const char* start, size_t length, int64_t& value) noexcept
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

    bool readBooleanToken (const char* start, size_t length, bool& value) noexcept
    {
        value = isWord (start, length, "true") || isWord (start, length, "True");
        return value || isWord (start, length, "false") || isWord (start, length, "False");
    }

    bool isIdentifierToken (const char* start, size_t length) noexcept
    {
        return length >= 2 && start[0] == '@' && allBytesAre (start + 1, length - 1, isLowerCaseHexadecimalDigit);
    }

    // The hexadecimal digits after the "@" of an identifier token; more than
    // sixteen keep the last sixteen, as juce::String::getHexValue64 does.
    uint64_t readIdentifierToken (const char* start, size_t length) noexcept
    {
        uint64_t value = 0;
        for (size_t i = 1; i < length; ++i)
            value = (value << 4) | (uint64_t) (isDecimalDigit (start[i]) ? start[i] - '0' : start[i] - 'a' + 10);
        return value;
    }

    bool isVersionToken (const char* start, size_t length) noexcept
    {
        return length >= 1 && start[0] == '#' && allBytesAre (start + 1, length - 1, isDecimalDigit);
    }

    // A letter, digit or "_", then letters and digits only.
    bool isNameToken (const char* start, size_t length) noexcept
    {
        return length > 0 && (isLetterOrDigit (start[0]) || start[0] == '_') && allBytesAre (start + 1, length - 1, isLetterOrDigit);
    }

    // A letter first, and none of the words that stand for values.
    bool isClassNameToken (const char* start, size_t length) noexcept
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
    ShortNumber readShortNumber (const char* start, size_t length, int64_t& integer, double& real) noexcept
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

    bool readShortDecimal (const char* start, size_t length, double& value) noexcept
    {
        int64_t integer;
        return readShortNumber (start, length, integer, value) == ShortNumber::real;
    }

    // The C conversion of a decimal floating-point prefix, whatever the
    // process's locale says the decimal point is. std::from_chars reads the
    // same prefix, correctly rounded as strtod is, without copying the token;
    // it takes no leading "+" and leaves values out of range alone, and those
    // go to strtod.
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

    // "+oo" and "-oo" stand for the largest reals.
    bool readRealToken (const char* start, size_t length, double& value)
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

    juce::String unescape (const juce::String& body)
    {
        return body.replace ("\\\\", "\\").replace ("\\\"", "\"");
    }
}

//==============================================================================
bool StateParser::Token::operator== (const char* literal) const noexcept
{
    return isWord (start, length, literal);
}

// Without a backslash there is nothing to unescape.
juce::String StateParser::Token::toString() const
{
    const auto bytes = juce::String::fromUTF8 (start, (int) length);
    return escaped && std::memchr (start, '\\', length) != nullptr ? unescape (bytes) : bytes;
}

//==============================================================================
/** Saves the position when a rule starts and restores it unless the rule succeeds. */
class StateParser::Rule
{
public:
    explicit Rule (StateParser& parser) noexcept : parser (parser), start (parser.position) {}

    ~Rule()
    {
        if (! keepingPosition)
            parser.position = start;
    }

    bool succeed() noexcept     { keepingPosition = true; return true; }
    void keepPosition() noexcept { keepingPosition = true; }

private:
    StateParser& parser;
    const size_t start;
    bool keepingPosition = false;
};

/** The variables of one list while it is read, on the parser's stack of pending
    variables; a list that completes moves them into its node at once.
*/
class StateParser::PendingVariables
{
public:
    explicit PendingVariables (StateParser& parser) : parser (parser), start (parser.pendingVariables.size()) {}

    ~PendingVariables()
    {
        auto& pending = parser.pendingVariables;
        pending.erase (pending.begin() + (std::ptrdiff_t) start, pending.end());
    }

    void add (juce::String name, std::shared_ptr<State> state)
    {
        parser.pendingVariables.emplace_back (std::move (name), std::move (state));
    }

    /** Appends the variables to the node, which becomes a list if there are any. */
    void moveTo (State& state)
    {
        auto& pending = parser.pendingVariables;
        if (pending.size() == start)
            return;
        state.setType (StateType::variablesType);
        auto& variables = *state.payload.variables;
        variables.reserve (variables.size() + pending.size() - start);
        std::move (pending.begin() + (std::ptrdiff_t) start, pending.end(), std::back_inserter (variables));
    }

private:
    StateParser& parser;
    const size_t start;
};

//==============================================================================
StateParser::StateParser (ExecutionContext& context, const juce::String& textToParse, const juce::String& source,
                          juce::InputStream* binary, StateParserCallback* callback)
    : textString (makeWellFormedUtf8 (textToParse, length)), source (source), binary (binary), context (context), callback (callback)
{
    text = textString.toRawUTF8();
}

//==============================================================================
// The small primitives are inline: as members of a shared library they would
// otherwise stay calls, which cost more than what they do.
inline size_t StateParser::skipWhiteSpaceFrom (size_t start) const noexcept
{
    if (start >= length || ! isWhiteSpace (text[start]))
        return start;
    if (start + 1 >= length || ! isWhiteSpace (text[start + 1]))
        return start + 1;
    return skipWhiteSpaceRun (start);
}

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

// Literals are a byte or two long, and the text holds no zero byte.
bool StateParser::matchLiteral (const char* literal)
{
    if (aborted)
        return false;
    size_t end = skipWhiteSpaceFrom (position);
    if (end > length)
        return false;
    for (; *literal != 0; ++literal, ++end)
        if (end >= length || text[end] != *literal)
            return false;
    position = end;
    return true;
}

// The alternatives of a value read the same token in turn, so the last token
// read at each set is kept: what a position gives never changes.
bool StateParser::readToken (Separators separators, Token& token)
{
    if (aborted || isPastEnd())
        return false;
    auto& read = lastTokens[(int) separators];
    if (read.start != position)
    {
        read.start = position;
        read.found = scanToken (position, separators, read.token, read.end);
    }
    if (! read.found)
        return false;
    token = read.token;
    position = read.end;
    return true;
}

// A token that reaches the end of the text is valid even when it is empty, so a
// rule that starts at the end sees an empty token there. Such a token also
// consumes the end itself: no token can be read after it. That is why an empty
// text reads as the integer 0, while "nil" alone, an identifier, leaves no
// value behind it.
inline bool StateParser::scanToken (size_t from, Separators separators, Token& token, size_t& next) const
{
    const auto& table = separatorTables[(int) separators];
    const size_t start = skipWhiteSpaceFrom (from);
    size_t end = start;
    while (end < length && ! table.isSeparator[(uint8_t) text[end]])
        ++end;
    if (end == start && end < length)
        return false;

    token = { text + start, end - start, false };
    next = end == length ? length + 1 : skipWhiteSpaceFrom (end);
    return true;
}

bool StateParser::readQuotedString (Token& token)
{
    return ! aborted && scanQuotedString (position, token, position);
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

bool StateParser::readNonNegativeInteger (uint64_t& value)
{
    Rule rule (*this);
    Token token;
    if (! readToken (Separators::setA, token) || token.length == 0 || ! allBytesAre (token.start, token.length, isDecimalDigit))
        return false;
    value = decimalToUnsigned (token.start, token.length);
    return rule.succeed();
}

bool StateParser::readIdentifierName (Token& token)
{
    Rule rule (*this);
    if (! readToken (Separators::setA, token) || ! isClassNameToken (token.start, token.length))
        return false;
    return rule.succeed();
}

//==============================================================================
/** Reads the texts of plain trees at once, or gives up.

    Most texts hold nothing but lists, integers, reals, strings, booleans and
    void, under atomic class prefixes, identifiers and versions, and parse
    without a single rule failing after its first byte. For such a text the
    first byte of a value leaves one alternative, or a few tried in the rules'
    order, and this reader takes it straight away, building the tree that the
    rules build: the same nodes, names and interned class expressions. It
    gives up on anything else (template and parameter class expressions, nil
    identifiers, pointers, buffers, native pointers, class values, tokens that
    reach the end of the text, nesting beyond the limit) and on every text that
    does not parse, whose report only the rules can make. The rules then read
    the text from the start, as if this reader had not been there.
*/
class StateParser::PlainReader
{
public:
    explicit PlainReader (StateParser& parser) : parser (parser), text (parser.text), length (parser.length) {}

    std::shared_ptr<State> readTopLevelState()
    {
        auto state = readState();
        return state != nullptr && position == length ? state : nullptr;
    }

private:
    StateParser& parser;
    const char* const text;
    const size_t length;
    size_t position = 0;
    uint32_t depth = 0;

    // The last token of set A, which a variable's name and its value often both begin with.
    struct { size_t from = (size_t) -1; bool found; Token token; size_t next; } lastWord;

    // A token that reaches the end of the text consumes the end too, which is left to the rules.
    bool readWordToken (size_t from, Token& token, size_t& next)
    {
        if (lastWord.from != from)
        {
            lastWord.from = from;
            lastWord.found = parser.scanToken (from, Separators::setA, lastWord.token, lastWord.next);
        }
        token = lastWord.token;
        next = lastWord.next;
        return lastWord.found && next <= length;
    }

    std::shared_ptr<State> readState()
    {
        if (++depth > maximumDepth)
            return nullptr;
        auto state = std::make_shared<State>();
        position = parser.skipWhiteSpaceFrom (position);
        if (! readPrefixes (*state) || ! readValue (*state))
            return nullptr;
        --depth;
        return state;
    }

    // From here on every token leaves the position after the white space that
    // follows it, so that a byte tells what comes next.
    bool readPrefixes (State& state)
    {
        return (! isAt ('\'') || readClassPrefix (state))
            && (! (isAt ('@') || isAt ('n')) || readIdentifier (state))
            && (! isAt ('#') || readVersion (state));
    }

    bool isAt (char byte) const noexcept { return position < length && text[position] == byte; }

    // An atomic name: one followed by "(" or ":" is left to the rules.
    bool readClassPrefix (State& state)
    {
        const size_t start = parser.skipWhiteSpaceFrom (position);
        if (start >= length || text[start] != '\'')
            return true;
        Token name;
        size_t next;
        if (! readWordToken (start + 1, name, next) || ! isClassNameToken (name.start, name.length)
            || (next < length && (text[next] == '(' || text[next] == ':')))
            return false;
        state.setClassExpression (parser.getAtomicExpression (name));
        position = next;
        return true;
    }

    // Only "nil" and tokens of set B that begin with "@" take the rule of
    // identifiers; the first is left to the rules, and the second is an
    // identifier or a text that does not parse.
    bool readIdentifier (State& state)
    {
        Token token;
        size_t next;
        if (! readPrefixToken ('@', 'n', token, next))
            return true;
        if (token == "nil" || next > length)
            return false;
        if (token.start[0] != '@')
            return true;
        if (! isIdentifierToken (token.start, token.length))
            return false;
        state.setUniqueIdentifier (UniqueIdentifier (readIdentifierToken (token.start, token.length)));
        position = next;
        return true;
    }

    bool readVersion (State& state)
    {
        Token token;
        size_t next;
        if (! readPrefixToken ('#', '#', token, next))
            return true;
        if (next > length || ! isVersionToken (token.start, token.length))
            return false;
        state.setVersionNumber (decimalToUnsigned (token.start + 1, token.length - 1));
        position = next;
        return true;
    }

    // The token of set B here, when it begins with one of the bytes.
    bool readPrefixToken (char firstByte, char otherFirstByte, Token& token, size_t& next) const
    {
        const size_t start = parser.skipWhiteSpaceFrom (position);
        return start < length && (text[start] == firstByte || text[start] == otherFirstByte)
            && parser.scanToken (start, Separators::setB, token, next);
    }

    bool readValue (State& state)
    {
        const size_t start = position;
        if (start >= length)
            return false;
        switch (text[start])
        {
            case '{':  return readList (state, start + 1);
            case '"':  return readString (state, start);
            default:   return readWord (state, start);
        }
    }

    bool readString (State& state, size_t start)
    {
        Token token;
        if (! parser.scanQuotedString (start, token, position))
            return false;
        state.setString (parser.getStringValue (token));
        return true;
    }

    // Void, booleans, integers and reals, in the rules' order: the token must be
    // one of them whole. A token that begins with a digit or "-" can only be a
    // number, and one of digits alone is an integer.
    bool readWord (State& state, size_t start)
    {
        Token token;
        size_t next;
        if (! readWordToken (start, token, next))
            return false;

        if (token.length > 0 && (isDecimalDigit (token.start[0]) || token.start[0] == '-'))
        {
            if (! readNumber (state, token))
                return false;
        }
        else if (! readOtherWord (state, token))
        {
            return false;
        }
        position = next;
        return true;
    }

    static bool readNumber (State& state, const Token& token)
    {
        int64_t integer;
        double real;
        switch (readShortNumber (token.start, token.length, integer, real))
        {
            case ShortNumber::integer: state.setInteger (integer); return true;
            case ShortNumber::real:    state.setReal (real); return true;
            case ShortNumber::none:    break;
        }
        if (readIntegerToken (token.start, token.length, integer))
            state.setInteger (integer);
        else if (readRealToken (token.start, token.length, real))
            state.setReal (real);
        else
            return false;
        return true;
    }

    static bool readOtherWord (State& state, const Token& token)
    {
        bool boolean;
        if (token == "void")
            state.setVoid();
        else if (readBooleanToken (token.start, token.length, boolean))
            state.setBoolean (boolean);
        else
            return readNumber (state, token);
        return true;
    }

    bool readList (State& state, size_t afterOpening)
    {
        state.reserveVariables (0);
        PendingVariables variables (parser);
        position = afterOpening;
        for (;;)
        {
            position = parser.skipWhiteSpaceFrom (position);
            if (position < length && text[position] == '}')
                break;
            if (! readVariable (variables))
                return false;
            if (position >= length || text[position] != ',')
                break;
            ++position;
        }
        position = parser.skipWhiteSpaceFrom (position);
        if (position >= length || text[position] != '}')
            return false;
        position = parser.skipWhiteSpaceFrom (position + 1);
        variables.moveTo (state);
        return true;
    }

    bool readVariable (PendingVariables& variables)
    {
        juce::String name;
        readName (name);
        auto variable = readState();
        if (variable == nullptr)
            return false;
        variables.add (std::move (name), std::move (variable));
        return true;
    }

    // A token of letters and digits ("_" may come first) then "=", or the
    // variable has no name. The bytes are hashed for the names' cache as the
    // token is read.
    void readName (juce::String& name)
    {
        const size_t start = parser.skipWhiteSpaceFrom (position);
        size_t end = start;
        auto hash = ConversionCache<juce::String>::startHash;
        for (; end < length && (isLetterOrDigit (text[end]) || (end == start && text[end] == '_')); ++end)
            hash = ConversionCache<juce::String>::hashByte (hash, text[end]);
        if (end == start || end >= length || ! separatorTables[(int) Separators::setA].isSeparator[(uint8_t) text[end]])
            return;

        const size_t next = parser.skipWhiteSpaceFrom (end);
        if (next >= length || text[next] != '=')
            return;
        name = parser.getName ({ text + start, end - start, false }, hash);
        position = next + 1;
    }
};

juce::String StateParser::getName (const Token& token)
{
    return names.get (token.start, token.length, [&] { return token.toString(); });
}

juce::String StateParser::getName (const Token& token, uint32_t hash)
{
    return names.get (token.start, token.length, hash, [&] { return token.toString(); });
}

juce::String StateParser::getStringValue (const Token& token)
{
    return shortStrings.get (token.start, token.length, [&] { return token.toString(); });
}

const ClassExpression* StateParser::getAtomicExpression (const Token& name)
{
    return atomicExpressions.get (name.start, name.length, [&] { return createAtomicClassExpression (name.toString()); });
}

// The callback may change nodes and stop the parse as they complete, which the
// rules alone follow.
std::shared_ptr<State> StateParser::parseTopLevelState()
{
    if (callback == nullptr)
    {
        if (auto state = PlainReader (*this).readTopLevelState())
        {
            position = length;
            return state;
        }
    }
    return parseState (true);
}

//==============================================================================
std::shared_ptr<State> StateParser::parseState (bool topLevel)
{
    if (aborted)
        return nullptr;

    struct DepthScope
    {
        explicit DepthScope (uint32_t& depth) : depth (depth) { ++depth; }
        ~DepthScope() { --depth; }
        uint32_t& depth;
    } depthScope (depth);

    if (depth > maximumDepth)
    {
        report ("Too deeply nested state: more than " + juce::String (maximumDepth) + " levels");
        aborted = true;
        return nullptr;
    }

    if (topLevel)
    {
        Rule rule (*this);
        std::shared_ptr<State> state = parseStateAt (true);
        if (state != nullptr)
            rule.succeed();
        return state;
    }

    if (auto* earlier = findEarlierParse())
    {
        deepest = std::max (deepest, depth + earlier->height - 1);
        if (earlier->state != nullptr)
            position = earlier->end;
        return earlier->state;
    }

    Rule rule (*this);
    const size_t start = position;
    const uint32_t outerDeepest = deepest;
    deepest = depth;

    std::shared_ptr<State> state = parseStateAt (false);

    const uint32_t height = deepest - depth + 1;
    deepest = std::max (outerDeepest, deepest);
    if (state == nullptr)
        startBacktracking();
    if (backtracking)
        earlierParses[start] = { state, position, height };
    if (state != nullptr)
        rule.succeed();
    return state;
}

// Backtracking may reach the same text again from another enclosing rule: a
// "{" block that fails falls back on a class expression, after which the
// enclosing list goes on over what the block had read, and so on up the
// levels, which takes exponential time. A nested state depends on nothing but
// the text from its position, so once backtracking has begun (a nested state,
// block or template argument list has failed after reading some of the text)
// each result, failure or node, is remembered and taken again: no position is
// then parsed more than twice. Texts that parse at once never backtrack and
// pay nothing for this. A result is taken again only if its nesting still fits
// under the depth limit from here, so that the limit acts as it would without
// the shortcut. The callback sees each node once.
void StateParser::startBacktracking() noexcept
{
    backtracking = true;
}

const StateParser::EarlierParse* StateParser::findEarlierParse() const
{
    if (! backtracking)
        return nullptr;
    const auto found = earlierParses.find (position);
    if (found == earlierParses.end() || depth + found->second.height - 1 > maximumDepth)
        return nullptr;
    return &found->second;
}

std::shared_ptr<State> StateParser::parseStateAt (bool topLevel)
{
    auto state = std::make_shared<State>();

    {
        Rule prefix (*this);
        if (matchLiteral (State::classToken))
            if (auto* expression = parseClassExpression())
            {
                state->setClassExpression (expression);
                prefix.succeed();
            }
    }

    UniqueIdentifier identifier;
    if (parseIdentifier (identifier))
        state->setUniqueIdentifier (identifier);

    uint64_t version = 0;
    if (parseVersion (version))
        state->setVersionNumber (version);

    if (! parseValue (*state))
    {
        report ("Expected a value.");
        return nullptr;
    }

    notifyParsed (*state);
    skipWhiteSpace();
    if (topLevel && position < length)
    {
        report ("Unexpected expression at the end of state: " + getPositionReport());
        return nullptr;
    }
    return state;
}

void StateParser::notifyParsed (State& state)
{
    if (callback != nullptr && ! aborted && ! callback->stateParsed (state))
        aborted = true;
}

bool StateParser::parseIdentifier (UniqueIdentifier& identifier)
{
    Rule rule (*this);
    Token token;
    if (! readToken (Separators::setB, token))
        return false;

    if (token == "nil")
    {
        identifier = UniqueIdentifier();
        return rule.succeed();
    }
    if (! isIdentifierToken (token.start, token.length))
        return false;
    identifier = UniqueIdentifier (readIdentifierToken (token.start, token.length));
    return rule.succeed();
}

bool StateParser::parseVersion (uint64_t& version)
{
    Rule rule (*this);
    Token token;
    if (! readToken (Separators::setB, token) || ! isVersionToken (token.start, token.length))
        return false;
    version = decimalToUnsigned (token.start + 1, token.length - 1);
    return rule.succeed();
}

//==============================================================================
bool StateParser::parseValue (State& state)
{
    return parseVoid (state)
        || parseBoolean (state)
        || parseInteger (state)
        || parseReal (state)
        || parseString (state)
        || parseWeakPointer (state)
        || parseOwnedPointer (state)
        || parseBuffer (state)
        || parseVariableBlock (state)
        || parseNativePointer (state)
        || [&] {
               auto* expression = parseClassExpression();
               if (expression != nullptr)
                   state.setClassExpressionValue (expression);
               return expression != nullptr;
           }();
}

bool StateParser::parseVoid (State& state)
{
    Rule rule (*this);
    Token token;
    if (! readToken (Separators::setA, token) || token != "void")
        return false;
    state.setVoid();
    return rule.succeed();
}

bool StateParser::parseBoolean (State& state)
{
    Rule rule (*this);
    Token token;
    bool value;
    if (! readToken (Separators::setA, token) || ! readBooleanToken (token.start, token.length, value))
        return false;
    state.setBoolean (value);
    return rule.succeed();
}

// The empty token at the end of the text reads as 0.
bool StateParser::parseInteger (State& state)
{
    Rule rule (*this);
    Token token;
    int64_t value;
    if (! readToken (Separators::setA, token) || ! readIntegerToken (token.start, token.length, value))
        return false;
    state.setInteger (value);
    return rule.succeed();
}

bool StateParser::parseReal (State& state)
{
    Rule rule (*this);
    Token token;
    double value;
    if (! readToken (Separators::setA, token) || ! readRealToken (token.start, token.length, value))
        return false;
    state.setReal (value);
    return rule.succeed();
}

bool StateParser::parseString (State& state)
{
    Rule rule (*this);
    Token token;
    if (! readQuotedString (token))
        return false;
    state.setString (getStringValue (token));
    return rule.succeed();
}

bool StateParser::parseWeakPointer (State& state)
{
    Rule rule (*this);
    UniqueIdentifier identifier;
    if (! matchLiteral (State::weakPointerToken) || ! parseIdentifier (identifier))
        return false;
    state.setUniqueIdentifierValue (identifier);
    return rule.succeed();
}

bool StateParser::parseOwnedPointer (State& state)
{
    Rule rule (*this);
    if (! matchLiteral (State::ownedPointerToken))
        return false;
    auto target = parseState (false);
    if (target == nullptr)
        return false;
    state.setOwnedPointer (target);
    return rule.succeed();
}

bool StateParser::parseBuffer (State& state)
{
    Rule rule (*this);
    uint64_t offset = 0, size = 0;
    if (! matchLiteral ("[") || ! readNonNegativeInteger (offset) || ! readNonNegativeInteger (size) || ! matchLiteral ("]"))
        return false;
    state.setBuffer (RawBuffer());
    readBufferBytes (state, offset, size);
    return rule.succeed();
}

// A missing or short binary stream is not an error: the buffer stays empty.
void StateParser::readBufferBytes (State& state, uint64_t offset, uint64_t size)
{
    if (binary == nullptr)
        return;
    const int64_t totalLength = binary->getTotalLength();
    if (totalLength < 0 || (uint64_t) totalLength < offset || (uint64_t) totalLength - offset < size
        || ! binary->setPosition ((int64_t) offset))
        return;

    // Streams read at most an int's worth at a time. Should the stream give
    // less than its length promised, the rest is zeroed rather than left undefined.
    auto* destination = static_cast<char*> (state.getBuffer().allocateData (size));
    uint64_t done = 0;
    while (done < size)
    {
        const int chunk = (int) std::min<uint64_t> (size - done, (uint64_t) std::numeric_limits<int>::max());
        const int numRead = binary->read (destination + done, chunk);
        if (numRead <= 0)
            break;
        done += (uint64_t) numRead;
    }
    if (done < size)
        std::memset (destination + done, 0, (size_t) (size - done));
}

// Once "{" is read the block keeps its position even when it fails, so that
// the remaining alternatives go on from where the variables ended; whatever
// they yield replaces the variables read so far.
bool StateParser::parseVariableBlock (State& state)
{
    Rule rule (*this);
    if (! matchLiteral (State::openScope))
        return false;
    rule.keepPosition();
    state.reserveVariables (0);
    if (parseVariables (state) && matchLiteral (State::closeScope))
        return true;
    startBacktracking();
    return false;
}

// A "}" ends the list without being consumed, which is what allows a trailing
// ","; the caller requires its own closing token. The node receives the
// variables once the list is complete: a list that fails leaves no trace in a
// node, which the alternatives after it replace or which is dropped.
bool StateParser::parseVariables (State& state)
{
    Rule rule (*this);
    PendingVariables variables (*this);
    for (;;)
    {
        skipWhiteSpace();
        if (position < length && text[position] == '}')
            break;
        if (! parseVariable (variables))
            return false;
        skipWhiteSpace();
        if (! matchLiteral (","))
            break;
    }
    variables.moveTo (state);
    return rule.succeed();
}

bool StateParser::parseVariable (PendingVariables& variables)
{
    Rule rule (*this);
    juce::String name;
    {
        Rule nameRule (*this);
        Token token;
        if (readToken (Separators::setA, token) && isNameToken (token.start, token.length)
            && matchLiteral (State::assignmentToken))
        {
            name = getName (token);
            nameRule.succeed();
        }
    }

    auto variable = parseState (false);
    if (variable == nullptr)
    {
        report ("Could not parse object state.");
        return false;
    }
    variables.add (std::move (name), std::move (variable));
    return rule.succeed();
}

// Native pointers mean nothing outside their process: their text reads as void.
bool StateParser::parseNativePointer (State& state)
{
    Rule rule (*this);
    Token token;
    if (! readToken (Separators::setA, token) || token.length < 2 || token.start[0] != '0' || token.start[1] != 'x'
        || ! allBytesAre (token.start + 2, token.length - 2, isLowerCaseHexadecimalDigit))
        return false;
    state.setVoid();
    return rule.succeed();
}

//==============================================================================
const ClassExpression* StateParser::parseClassExpression()
{
    if (aborted)
        return nullptr;
    Rule rule (*this);
    const ClassExpression* expression = parseTemplateForm();
    if (expression == nullptr)
        expression = parseAtomicForm();
    if (expression == nullptr)
        return nullptr;

    for (;;)
    {
        Rule parameter (*this);
        Token name;
        if (! matchLiteral (":") || ! readIdentifierName (name))
            break;
        expression = createClassParameterExpression (expression, name.toString());
        parameter.succeed();
    }
    rule.succeed();
    return expression;
}

// A single argument is the arguments state itself; several are kept as a list.
const ClassExpression* StateParser::parseTemplateForm()
{
    Rule rule (*this);
    Token name;
    if (! readIdentifierName (name) || ! matchLiteral ("("))
        return nullptr;

    auto arguments = std::make_shared<State>();
    if (! parseVariables (*arguments) || ! matchLiteral (")"))
    {
        startBacktracking();
        return nullptr;
    }

    if (arguments->getNumVariables() == 1)
        arguments = arguments->getVariableState (0);
    else
        notifyParsed (*arguments);

    rule.succeed();
    return createTemplateClassExpression (name.toString(), arguments);
}

const ClassExpression* StateParser::parseAtomicForm()
{
    Rule rule (*this);
    Token name;
    if (! readIdentifierName (name))
        return nullptr;
    rule.succeed();
    return getAtomicExpression (name);
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
    const size_t end = std::min (position, length);
    size_t lastLineFeed = 0;
    line = 0;
    for (size_t i = 1; i <= end && i < length; ++i)
    {
        if (text[i] == '\n')
        {
            ++line;
            lastLineFeed = i;
        }
    }
    column = (uint32_t) (end - lastLineFeed);
}

// The reported column makes up for the counter's start on the first line.
juce::String StateParser::getPositionReport() const
{
    uint32_t line, column;
    getLineAndColumn (line, column);
    size_t lineStart = 0;
    int reportedColumn = (int) column;
    for (size_t i = std::min (position, length); i > 0; --i)
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

//==============================================================================
std::shared_ptr<State> State::parse (ExecutionContext& context, juce::InputStream& text, juce::InputStream& binary,
                                     const juce::String& source, StateParserCallback* callback)
{
    StateParser parser (context, text.readEntireStreamAsString(), source, &binary, callback);
    return parser.parseTopLevelState();
}

std::shared_ptr<State> State::parse (ExecutionContext& context, juce::InputStream& text,
                                     const juce::String& source, StateParserCallback* callback)
{
    StateParser parser (context, text.readEntireStreamAsString(), source, nullptr, callback);
    return parser.parseTopLevelState();
}

std::shared_ptr<State> State::createFromStateString (ExecutionContext& context, const juce::String& text,
                                                     const juce::String& source, StateParserCallback* callback)
{
    StateParser parser (context, text, source, nullptr, callback);
    auto state = parser.parseTopLevelState();
    if (state == nullptr)
        context.error ("Could not parse value \"" + text + "\"");
    return state;
}

std::shared_ptr<State> State::createFromStateStringBuffer (ExecutionContext& context, const void* data, uint64_t size,
                                                           const juce::String& source, StateParserCallback* callback)
{
    juce::MemoryInputStream stream (data, (size_t) size, false);
    auto state = parse (context, stream, source, callback);
    if (state == nullptr)
        context.error ("Could not parse value of " + source);
    return state;
}

} // namespace tov
