#include "StateParser.h"
#include "WellFormedUtf8.h"
#include "State.h"
#include "StateParserCallback.h"
#include "ClassExpression.h"
#include "../Standard/ExecutionContext.h"
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale.h>
#include <string>

namespace tov
{

namespace
{
    // Set A ends every token but identifiers and versions, which end at set B:
    // tab, "=", ":" and the brackets do not end them.
    const char* const separatorsA = " ,{}():=\t\r\n}][";
    const char* const separatorsB = " ,{\r\n}";

    bool isWhiteSpace (char byte) noexcept
    {
        return byte == 9 || byte == 10 || byte == 13 || byte == 32;
    }

    bool isSeparator (char byte, const char* separators) noexcept
    {
        return std::memchr (separators, byte, std::strlen (separators)) != nullptr;
    }

    bool isDecimalDigit (char byte) noexcept
    {
        return byte >= '0' && byte <= '9';
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

    size_t countBytes (const char* start, size_t length, char byte)
    {
        size_t count = 0;
        for (size_t i = 0; i < length; ++i)
            count += start[i] == byte ? 1 : 0;
        return count;
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

    // The C conversion of a decimal floating-point prefix, whatever the
    // process's locale says the decimal point is.
    double readDecimalPrefix (const char* start, size_t length)
    {
        const std::string bytes (start, length);
       #if JUCE_WINDOWS
        static const _locale_t cLocale = _create_locale (LC_NUMERIC, "C");
        return _strtod_l (bytes.c_str(), nullptr, cLocale);
       #else
        static const locale_t cLocale = newlocale (LC_NUMERIC_MASK, "C", (locale_t) nullptr);
        return strtod_l (bytes.c_str(), nullptr, cLocale);
       #endif
    }

    juce::String unescape (const juce::String& body)
    {
        return body.replace ("\\\\", "\\").replace ("\\\"", "\"");
    }
}

//==============================================================================
bool StateParser::Token::operator== (const char* literal) const noexcept
{
    return std::strlen (literal) == length && std::memcmp (start, literal, length) == 0;
}

juce::String StateParser::Token::toString() const
{
    const auto bytes = juce::String::fromUTF8 (start, (int) length);
    return escaped ? unescape (bytes) : bytes;
}

//==============================================================================
/** Saves the position when a rule starts and restores it unless the rule succeeds. */
class StateParser::Rule
{
public:
    explicit Rule (StateParser& parser) : parser (parser)
    {
        parser.savedPositions.push_back ({ parser.position, parser.line, parser.column });
    }

    ~Rule()
    {
        if (! keepingPosition)
        {
            const auto& saved = parser.savedPositions.back();
            parser.position = saved.position;
            parser.line = saved.line;
            parser.column = saved.column;
        }
        parser.savedPositions.pop_back();
    }

    bool succeed() noexcept     { keepingPosition = true; return true; }
    void keepPosition() noexcept { keepingPosition = true; }

private:
    StateParser& parser;
    bool keepingPosition = false;
};

//==============================================================================
StateParser::StateParser (ExecutionContext& context, const juce::String& textToParse, const juce::String& source,
                          juce::InputStream* binary, StateParserCallback* callback)
    : textString (makeWellFormedUtf8 (textToParse)), source (source), binary (binary), context (context), callback (callback)
{
    text = textString.toRawUTF8();
    length = textString.getNumBytesAsUTF8();
    savedPositions.reserve (32);
}

std::shared_ptr<State> StateParser::parseTopLevelState()
{
    return parseState (true);
}

//==============================================================================
// The line counter turns on arrival at a line feed, so the column of the first
// byte of a line is 1 except on the first line, where it is 0. The position
// report makes up for that.
void StateParser::advance() noexcept
{
    ++position;
    ++column;
    if (position < length && text[position] == '\n')
    {
        ++line;
        column = 0;
    }
}

void StateParser::skipWhiteSpace() noexcept
{
    while (position < length && isWhiteSpace (text[position]))
        advance();
}

bool StateParser::matchLiteral (const char* literal)
{
    if (aborted)
        return false;
    Rule rule (*this);
    skipWhiteSpace();
    const size_t literalLength = std::strlen (literal);
    if (isPastEnd() || length - position < literalLength || std::memcmp (text + position, literal, literalLength) != 0)
        return false;
    for (size_t i = 0; i < literalLength; ++i)
        advance();
    return rule.succeed();
}

// A token that reaches the end of the text is valid even when it is empty, so a
// rule that starts at the end sees an empty token there. Such a token also
// consumes the end itself: no token can be read after it. That is why an empty
// text reads as the integer 0, while "nil" alone, an identifier, leaves no
// value behind it.
bool StateParser::readToken (const char* separators, Token& token)
{
    if (aborted || isPastEnd())
        return false;
    Rule rule (*this);
    skipWhiteSpace();
    size_t end = position;
    while (end < length && ! isSeparator (text[end], separators))
        ++end;
    if (end == position && end < length)
        return false;

    token = { text + position, end - position, false };
    while (position < end)
        advance();
    if (end == length)
        position = length + 1;
    skipWhiteSpace();
    return rule.succeed();
}

bool StateParser::readQuotedString (Token& token)
{
    if (aborted)
        return false;
    Rule rule (*this);
    skipWhiteSpace();
    if (position >= length || text[position] != '"')
        return false;

    bool escapedByte = false;
    for (size_t end = position + 1; end < length; ++end)
    {
        const char byte = text[end];
        if (byte == '"' && ! escapedByte)
        {
            token = { text + position + 1, end - position - 1, true };
            while (position <= end)
                advance();
            skipWhiteSpace();
            return rule.succeed();
        }
        escapedByte = byte == '\\' && ! escapedByte;
    }
    return false;
}

bool StateParser::readNonNegativeInteger (uint64_t& value)
{
    Rule rule (*this);
    Token token;
    if (! readToken (separatorsA, token) || token.length == 0 || ! allBytesAre (token.start, token.length, isDecimalDigit))
        return false;
    value = decimalToUnsigned (token.start, token.length);
    return rule.succeed();
}

bool StateParser::readIdentifierName (Token& token)
{
    Rule rule (*this);
    if (! readToken (separatorsA, token) || token.length == 0
        || ! juce::CharacterFunctions::isLetter (token.start[0])
        || token == "nil" || token == "void" || token == "true" || token == "false")
        return false;
    return rule.succeed();
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
        {
            position = earlier->end.position;
            line = earlier->end.line;
            column = earlier->end.column;
        }
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
        earlierParses[start] = { state, { position, line, column }, height };
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
    if (! readToken (separatorsB, token))
        return false;

    if (token == "nil")
    {
        identifier = UniqueIdentifier();
        return rule.succeed();
    }
    if (token.length < 2 || token.start[0] != '@' || ! allBytesAre (token.start + 1, token.length - 1, isLowerCaseHexadecimalDigit))
        return false;
    identifier.setFrom64BitsHexadecimalString (token.toString());
    return rule.succeed();
}

bool StateParser::parseVersion (uint64_t& version)
{
    Rule rule (*this);
    Token token;
    if (! readToken (separatorsB, token) || token.length == 0 || token.start[0] != '#'
        || ! allBytesAre (token.start + 1, token.length - 1, isDecimalDigit))
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
    if (! readToken (separatorsA, token) || token != "void")
        return false;
    state.setVoid();
    return rule.succeed();
}

bool StateParser::parseBoolean (State& state)
{
    Rule rule (*this);
    Token token;
    if (! readToken (separatorsA, token))
        return false;
    if (token == "true" || token == "True")
        state.setBoolean (true);
    else if (token == "false" || token == "False")
        state.setBoolean (false);
    else
        return false;
    return rule.succeed();
}

// A lone "-" and the empty token at the end of the text both read as 0.
bool StateParser::parseInteger (State& state)
{
    Rule rule (*this);
    Token token;
    if (! readToken (separatorsA, token))
        return false;

    const bool negative = token.length > 0 && token.start[0] == '-';
    const char* digits = token.start + (negative ? 1 : 0);
    const size_t numDigits = token.length - (negative ? 1 : 0);
    if (! allBytesAre (digits, numDigits, isDecimalDigit))
        return false;

    const uint64_t magnitude = decimalToUnsigned (digits, numDigits);
    state.setInteger ((int64_t) (negative ? 0 - magnitude : magnitude));
    return rule.succeed();
}

bool StateParser::parseReal (State& state)
{
    Rule rule (*this);
    Token token;
    if (! readToken (separatorsA, token))
        return false;

    const double largest = std::numeric_limits<double>::max();
    if (token == "+oo" || token == "-oo")
    {
        state.setReal (token.start[0] == '+' ? largest : -largest);
        return rule.succeed();
    }

    const auto isRealByte = [] (char byte) { return std::strchr ("0123456789.-+e", byte) != nullptr && byte != 0; };
    if (countBytes (token.start, token.length, '.') != 1
        || ! allBytesAre (token.start, token.length, isRealByte)
        || countBytes (token.start, token.length, 'e') > 1
        || countBytes (token.start, token.length, '-') > 2
        || countBytes (token.start, token.length, '+') > 2)
        return false;

    state.setReal (readDecimalPrefix (token.start, token.length));
    return rule.succeed();
}

bool StateParser::parseString (State& state)
{
    Rule rule (*this);
    Token token;
    if (! readQuotedString (token))
        return false;
    state.setString (token.toString());
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
// ","; the caller requires its own closing token.
bool StateParser::parseVariables (State& state)
{
    Rule rule (*this);
    for (;;)
    {
        skipWhiteSpace();
        if (position < length && text[position] == '}')
            break;
        if (! parseVariable (state))
            return false;
        skipWhiteSpace();
        if (! matchLiteral (","))
            break;
    }
    return rule.succeed();
}

bool StateParser::parseVariable (State& state)
{
    Rule rule (*this);
    juce::String name;
    {
        Rule nameRule (*this);
        Token token;
        const auto isNameByte = [] (char byte) { return juce::CharacterFunctions::isLetterOrDigit (byte); };
        if (readToken (separatorsA, token) && token.length > 0
            && (isNameByte (token.start[0]) || token.start[0] == '_')
            && allBytesAre (token.start + 1, token.length - 1, isNameByte)
            && matchLiteral (State::assignmentToken))
        {
            name = token.toString();
            nameRule.succeed();
        }
    }

    auto variable = parseState (false);
    if (variable == nullptr)
    {
        report ("Could not parse object state.");
        return false;
    }
    state.addVariable (name, variable);
    return rule.succeed();
}

// Native pointers mean nothing outside their process: their text reads as void.
bool StateParser::parseNativePointer (State& state)
{
    Rule rule (*this);
    Token token;
    if (! readToken (separatorsA, token) || token.length < 2 || token.start[0] != '0' || token.start[1] != 'x'
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
    return createAtomicClassExpression (name.toString());
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

juce::String StateParser::getPositionReport() const
{
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
