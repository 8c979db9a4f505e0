#pragma once

// The plain-text reader of StateParser: a fast path, not the reference. The
// rules (StateParserRules.cpp) are the reference for the grammar; this reader
// must build exactly the tree that they build, or give up. The fuzz target
// Tests/Fuzz/StateParserFuzzer.cpp holds the two in step: it reads every input
// with both and requires the same tree and the same reports.

#include "StateParser.h"

namespace tov
{

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

    /** The tree of the whole text, or null when this reader gives up. */
    std::shared_ptr<State> readTopLevelState();

private:
    StateParser& parser;
    const char* const text;
    const size_t length;
    size_t position = 0;
    uint32_t depth = 0;

    // The last word token, which a variable's name and its value often both begin with.
    struct { size_t from = (size_t) -1; bool found; Token token; size_t next; } lastWord;

    bool readWordToken (size_t from, Token& token, size_t& next);
    std::shared_ptr<State> readState();
    bool readPrefixes (State& state);
    bool isAt (char byte) const noexcept { return position < length && text[position] == byte; }
    bool readClassPrefix (State& state);
    template <class Check, class Take>
    bool readPrefix (char firstByte, Check isValid, Take take);
    bool readValue (State& state);
    bool readString (State& state, size_t start);
    bool readWord (State& state, size_t start);
    static bool readNumber (State& state, const Token& token);
    static bool readOtherWord (State& state, const Token& token);
    bool readList (State& state, size_t afterOpening);
    bool readVariable (PendingVariables& variables);
    void readName (juce::String& name);
};

} // namespace tov
