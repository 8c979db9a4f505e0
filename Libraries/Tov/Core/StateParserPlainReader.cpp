// The plain-text reader: a fast path, which must build the tree of the rules
// (StateParserRules.cpp, the reference) or give up; Tests/Fuzz/StateParserFuzzer.cpp
// holds the two in step (see StateParserPlainReader.h).
//
// The members are inline, as they were when the class was defined in its
// declaration: the compiler then folds the small ones into their callers.
// Without it a parse takes about 2% more instructions.
#include "StateParserPlainReader.h"
#include "StateParserPendingVariables.h"
#include "StateParserTokens.h"
#include "State.h"

namespace tov
{

std::shared_ptr<State> StateParser::PlainReader::readTopLevelState()
{
    auto state = readState();
    return state != nullptr && position == length ? state : nullptr;
}

// A token that reaches the end of the text consumes the end too, which is left to the rules.
inline bool StateParser::PlainReader::readWordToken (size_t from, Token& token, size_t& next)
{
    if (lastWord.from != from)
    {
        lastWord.from = from;
        lastWord.found = parser.scanToken (from, Separators::ofWords, lastWord.token, lastWord.next);
    }
    token = lastWord.token;
    next = lastWord.next;
    return lastWord.found && ! token.consumesEnd;
}

inline std::shared_ptr<State> StateParser::PlainReader::readState()
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

// The prefix token that begins with the byte, if there is one: it must be one
// that the check accepts, and not reach the end of the text, which is left to
// the rules. Identifiers are only those that begin with "@": a "nil" or any
// other word is no value here, and this reader gives up on it.
template <class Check, class Take>
inline bool StateParser::PlainReader::readPrefix (char firstByte, Check isValid, Take take)
{
    Token token;
    size_t next;
    if (! isAt (firstByte) || ! parser.scanToken (position, Separators::ofPrefixes, token, next))
        return true;
    if (token.consumesEnd || ! isValid (token.start, token.length))
        return false;
    take (token);
    position = next;
    return true;
}

inline bool StateParser::PlainReader::readPrefixes (State& state)
{
    return (! isAt ('\'') || readClassPrefix (state))
        && readPrefix ('@', isIdentifierToken, [&state] (const Token& identifier)
           {
               state.setUniqueIdentifier (UniqueIdentifier (readIdentifierToken (identifier.start, identifier.length)));
           })
        && readPrefix ('#', isVersionToken, [&state] (const Token& version)
           {
               state.setVersionNumber (decimalToUnsigned (version.start + 1, version.length - 1));
           });
}

// An atomic name: one followed by "(" or ":" is left to the rules.
inline bool StateParser::PlainReader::readClassPrefix (State& state)
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

inline bool StateParser::PlainReader::readValue (State& state)
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

inline bool StateParser::PlainReader::readString (State& state, size_t start)
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
inline bool StateParser::PlainReader::readWord (State& state, size_t start)
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

inline bool StateParser::PlainReader::readNumber (State& state, const Token& token)
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

inline bool StateParser::PlainReader::readOtherWord (State& state, const Token& token)
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

inline bool StateParser::PlainReader::readList (State& state, size_t afterOpening)
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

inline bool StateParser::PlainReader::readVariable (PendingVariables& variables)
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
inline void StateParser::PlainReader::readName (juce::String& name)
{
    const size_t start = parser.skipWhiteSpaceFrom (position);
    size_t end = start;
    auto hash = ConversionCache<juce::String>::startHash;
    for (; end < length && (isLetterOrDigit (text[end]) || (end == start && text[end] == '_')); ++end)
        hash = ConversionCache<juce::String>::hashByte (hash, text[end]);
    if (end == start || end >= length || ! wordSeparators.isSeparator[(uint8_t) text[end]])
        return;

    const size_t next = parser.skipWhiteSpaceFrom (end);
    if (next >= length || text[next] != '=')
        return;
    name = parser.getName ({ text + start, end - start, false }, hash);
    position = next + 1;
}

} // namespace tov
