// The rules of StateParser: the reference reader of the grammar in StateParser.h,
// one rule per production, tried in the grammar's order with its backtracking;
// they alone make reports. The plain-text reader (StateParserPlainReader.h) is a
// fast path that must build the same trees, or give up and leave the text to
// these rules; the fuzz target Tests/Fuzz/StateParserFuzzer.cpp holds the two in
// step, reading every input both ways and requiring the same tree and reports.
#include "StateParserTokens.h"
#include "StateParserPendingVariables.h"
#include "State.h"
#include "StateParserCallback.h"
#include "ClassExpression.h"
#include <cstring>
#include <limits>

namespace tov
{

/** Saves the position when a rule starts and restores it unless the rule succeeds;
    the position includes whether the end of the text has been consumed.
*/
class StateParser::Rule
{
public:
    explicit Rule (StateParser& parser) noexcept
        : parser (parser), start (parser.position), endConsumedAtStart (parser.endConsumed) {}

    ~Rule()
    {
        if (! keepingPosition)
        {
            parser.position = start;
            parser.endConsumed = endConsumedAtStart;
        }
    }

    bool succeed() noexcept     { keepingPosition = true; return true; }
    void keepPosition() noexcept { keepingPosition = true; }

private:
    StateParser& parser;
    const size_t start;
    const bool endConsumedAtStart;
    bool keepingPosition = false;
};

//==============================================================================
inline void StateParser::skipWhiteSpace() noexcept
{
    position = skipWhiteSpaceFrom (position);
}

// Literals are a byte or two long, and the text holds no zero byte.
bool StateParser::matchLiteral (const char* literal)
{
    if (aborted || endConsumed)
        return false;
    size_t end = skipWhiteSpaceFrom (position);
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
    if (aborted || endConsumed)
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
    endConsumed = token.consumesEnd;
    return true;
}

bool StateParser::readQuotedString (Token& token)
{
    return ! aborted && scanQuotedString (position, token, position);
}

bool StateParser::readNonNegativeInteger (uint64_t& value)
{
    Rule rule (*this);
    Token token;
    if (! readToken (Separators::ofWords, token) || token.length == 0 || ! allBytesAre (token.start, token.length, isDecimalDigit))
        return false;
    value = decimalToUnsigned (token.start, token.length);
    return rule.succeed();
}

bool StateParser::readIdentifierName (Token& token)
{
    Rule rule (*this);
    if (! readToken (Separators::ofWords, token) || ! isClassNameToken (token.start, token.length))
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
            position = earlier->end;
            endConsumed = earlier->endConsumed;
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
        earlierParses[start] = { state, position, endConsumed, height };
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
    if (! readToken (Separators::ofPrefixes, token))
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
    if (! readToken (Separators::ofPrefixes, token) || ! isVersionToken (token.start, token.length))
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
    if (! readToken (Separators::ofWords, token) || token != "void")
        return false;
    state.setVoid();
    return rule.succeed();
}

// A value of one word token, which the conversion must take whole.
template <class Value, class Convert>
bool StateParser::parseWordValue (State& state, Convert convert, void (State::*setValue) (Value))
{
    Rule rule (*this);
    Token token;
    Value value;
    if (! readToken (Separators::ofWords, token) || ! convert (token.start, token.length, value))
        return false;
    (state.*setValue) (value);
    return rule.succeed();
}

bool StateParser::parseBoolean (State& state)
{
    return parseWordValue (state, readBooleanToken, &State::setBoolean);
}

// The empty token at the end of the text reads as 0.
bool StateParser::parseInteger (State& state)
{
    return parseWordValue (state, readIntegerToken, &State::setInteger);
}

bool StateParser::parseReal (State& state)
{
    return parseWordValue (state, readRealToken, &State::setReal);
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
        if (readToken (Separators::ofWords, token) && isNameToken (token.start, token.length)
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
    if (! readToken (Separators::ofWords, token) || token.length < 2 || token.start[0] != '0' || token.start[1] != 'x'
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

} // namespace tov
