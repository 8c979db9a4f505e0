#pragma once

#include "ConversionCache.h"
#include <juce_core/juce_core.h>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

// What the parser's files call in one another is hidden from the library's
// exports (none of it is public), so that those calls go straight to the
// function rather than through the procedure linkage table of the shared
// library: the plain-text reader makes several such calls per node, and
// through the table they cost about 2% of a parse.
#if defined (__GNUC__)
 #define TOV_STATE_PARSER_HIDDEN __attribute__ ((visibility ("hidden")))
#else
 #define TOV_STATE_PARSER_HIDDEN
#endif

namespace tov
{

class ClassExpression;
class ExecutionContext;
class State;
class StateParserCallback;
class UniqueIdentifier;

/** Reads the text form of State trees and of class expressions.

    Grammar (white space, the bytes 9, 10, 13 and 32, may stand between all parts;
    there are no comments; alternatives are tried in the order given):

        state             := ["'" class-expression] [identifier] [version] value
        identifier        := "nil" | "@" lower-case hexadecimal digits          (prefix token)
        version           := "#" decimal digits, possibly none                  (prefix token)
        value             := "void" | boolean | integer | real | string | "->" identifier
                           | "=>" state | "[" offset size "]" | "{" variables "}"
                           | "0x" token | class-expression
        boolean           := "true" | "True" | "false" | "False"
        integer           := digits | "-" digits | "-" | the empty token at the end of the text
        real              := "+oo" | "-oo" | a token of "0123456789.-+e" with exactly one ".",
                             at most one "e", two "-" and two "+", read as a C floating-point prefix
        string            := '"' bytes '"', where a backslash keeps the next byte from closing;
                             then every \\ becomes \ and every \" becomes "
        variables         := [variable {"," variable}] [","]
        variable          := [name "="] state
        name              := a letter, digit or "_", then letters and digits only
        "0x" token        := "0x" then decimal digits and "a" to "f"; reads as void
        class-expression  := (identifier-name "(" variables ")" | identifier-name) {":" identifier-name}
        identifier-name   := a token beginning with a letter, other than nil, void, true and false

    Tokens end at a word separator, a byte of " ,{}():=\t\r\n][", except the
    prefix tokens (identifiers and versions), which end at a prefix separator,
    a byte of " ,{\r\n}". A token may be empty only at the end of the text,
    and a token that reaches the end consumes it, so that nothing can be read
    after it. Every rule restores the position when it fails, with one
    exception: a "{" block whose "}" is missing keeps its position, and the
    remaining alternatives go on from there.

    Failures are reported through the ExecutionContext, at most once per parse
    (the innermost failure), with a position report naming the stream, the
    0-based line, the column and the line in question.

    Nesting is limited to maximumDepth states (each variable, owned pointer
    target and template argument is one level below its parent), so that no
    text can exhaust the stack: a level takes well under a kilobyte of stack
    in an optimised build, and every tree that the parser returns can be
    printed, compared, cloned and destroyed by recursion. A deeper text fails
    with "Too deeply nested state: more than 512 levels", and the parse stops.

    The parser works in place on the UTF-8 bytes of the text; a token is a view
    of them until its value is converted. Bytes of ill-formed UTF-8 sequences
    read as U+FFFD, so that every token converts to the same text every time.

    Two readers of the grammar share this class. The rules (StateParserRules.cpp)
    are the reference: they follow the grammar alternative by alternative, with
    its backtracking, and make every report. The plain-text reader
    (StateParserPlainReader.h) reads the common texts in one pass and gives up on
    everything else, which the rules then read from the start. The fuzz target
    Tests/Fuzz/StateParserFuzzer.cpp holds them in step: it reads every input
    both ways and requires the same tree and the same reports. Tokens, white
    space and position reports are in StateParserTokens.h and .cpp.
*/
class StateParser
{
public:
    /** The deepest nesting of states a text may have. */
    static constexpr uint32_t maximumDepth = 512;

    /** The binary stream, when given, holds the bytes of the buffers that the text refers to. */
    StateParser (ExecutionContext& context, const juce::String& text, const juce::String& source,
                 juce::InputStream* binary = nullptr, StateParserCallback* callback = nullptr);

    /** Parses the text as one state that must extend to the end of the text; null on failure. */
    std::shared_ptr<State> parseTopLevelState();

    /** Parses a class expression at the current position and interns it; null when there is none.
        A failed class expression is not an error in itself and is not reported.
    */
    const ClassExpression* parseClassExpression();

    /** True when nothing but white space was left unread. */
    bool isAtEnd() const noexcept { return position >= length; }

private:
    /** A view of bytes of the text. */
    struct Token
    {
        const char* start = nullptr;
        size_t length = 0;
        bool escaped = false;
        bool consumesEnd = false; // it reaches the end of the text, which it consumes with it

        inline bool operator== (const char* literal) const noexcept;
        inline bool operator!= (const char* literal) const noexcept;
        TOV_STATE_PARSER_HIDDEN juce::String toString() const;
    };

    /** The bytes that end tokens, named after the tokens they end: word separators
        end values, names and class names; prefix separators end the identifiers and
        versions that stand before a value.
    */
    enum class Separators { ofWords, ofPrefixes };

    /** What reading a token at a position gave, kept because the alternatives of
        a value read the same token one after the other. */
    struct TokenRead
    {
        size_t start = (size_t) -1;
        bool found = false;
        Token token;
        size_t end = 0;
    };

    class TOV_STATE_PARSER_HIDDEN Rule;
    class TOV_STATE_PARSER_HIDDEN PendingVariables;
    class TOV_STATE_PARSER_HIDDEN PlainReader;

    const char* text;
    size_t length;
    juce::String textString, source;
    size_t position = 0;
    bool endConsumed = false; // a token has reached the end of the text: no token can be read after it
    juce::InputStream* binary;
    ExecutionContext& context;
    bool errorReported = false;
    StateParserCallback* callback;
    bool aborted = false;
    uint32_t depth = 0;
    uint32_t deepest = 0;
    TokenRead lastTokens[2];
    mutable struct { size_t from, to; } lastSkip { (size_t) -1, 0 };

    // Variables of the lists being read, innermost last; each list takes its own
    // when it is complete, so that its vector is allocated once.
    std::vector<std::pair<juce::String, std::shared_ptr<State>>> pendingVariables;
    ConversionCache<juce::String> names;
    ConversionCache<juce::String> shortStrings; // values recur as names do: tags, states, choices
    ConversionCache<const ClassExpression*> atomicExpressions;

    /** What parsing a nested state at a position gave: the node or null, where
        it ended, and how many levels it used, itself included. */
    struct EarlierParse
    {
        std::shared_ptr<State> state;
        size_t end;
        bool endConsumed;
        uint32_t height;
    };

    bool backtracking = false;
    std::unordered_map<size_t, EarlierParse> earlierParses;

    // Scanning, which moves no position (StateParserTokens.h and .cpp; the inline
    // ones are in the header, for both readers).
    inline size_t skipWhiteSpaceFrom (size_t start) const noexcept;
    TOV_STATE_PARSER_HIDDEN size_t skipWhiteSpaceRun (size_t start) const noexcept;
    TOV_STATE_PARSER_HIDDEN size_t skipBlanks (size_t from) const noexcept;
    inline bool scanToken (size_t from, Separators separators, Token& token, size_t& next) const;
    TOV_STATE_PARSER_HIDDEN bool scanQuotedString (size_t from, Token& token, size_t& next) const;

    // The rules' steps, which move the position (StateParserRules.cpp).
    inline void skipWhiteSpace() noexcept;
    bool matchLiteral (const char* literal);
    bool readToken (Separators separators, Token& token);
    bool readQuotedString (Token& token);
    bool readNonNegativeInteger (uint64_t& value);
    bool readIdentifierName (Token& token);

    // Productions
    std::shared_ptr<State> parseState (bool topLevel);
    std::shared_ptr<State> parseStateAt (bool topLevel);
    void startBacktracking() noexcept;
    const EarlierParse* findEarlierParse() const;
    bool parseIdentifier (UniqueIdentifier& identifier);
    bool parseVersion (uint64_t& version);
    bool parseValue (State& state);
    bool parseVoid (State& state);
    template <class Value, class Convert>
    bool parseWordValue (State& state, Convert convert, void (State::*setValue) (Value));
    bool parseBoolean (State& state);
    bool parseInteger (State& state);
    bool parseReal (State& state);
    bool parseString (State& state);
    bool parseWeakPointer (State& state);
    bool parseOwnedPointer (State& state);
    bool parseBuffer (State& state);
    bool parseVariableBlock (State& state);
    bool parseVariables (State& state);
    bool parseVariable (PendingVariables& variables);
    bool parseNativePointer (State& state);
    const ClassExpression* parseTemplateForm();
    const ClassExpression* parseAtomicForm();

    // Values of tokens, converted once per text (StateParserTokens.h and .cpp)
    TOV_STATE_PARSER_HIDDEN inline juce::String getName (const Token& token);
    TOV_STATE_PARSER_HIDDEN inline juce::String getName (const Token& token, uint32_t hash);
    TOV_STATE_PARSER_HIDDEN inline juce::String getStringValue (const Token& token);
    TOV_STATE_PARSER_HIDDEN const ClassExpression* getAtomicExpression (const Token& name);
    void readBufferBytes (State& state, uint64_t offset, uint64_t size);
    void notifyParsed (State& state);

    // Reporting (StateParserTokens.cpp)
    void report (const juce::String& message);
    juce::String getPositionReport() const;
    void getLineAndColumn (uint32_t& line, uint32_t& column) const noexcept;
};

} // namespace tov

#undef TOV_STATE_PARSER_HIDDEN
