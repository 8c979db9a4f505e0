#pragma once

#include "StringMeasureCache.h"
#include <juce_core/juce_core.h>
#include <cstdint>
#include <string>
#include <vector>

namespace tov
{

class State;

/** Writes the text form of a State tree; StateParser reads it back.

    A node is printed on one line when it fits: when its estimated length is
    below what remains of maximumLineLength from the current column. A list
    that does not fit puts its "{" and "}" on lines of their own and each
    variable on a line, indented by two blanks per level; the lines of such a
    list end in ", ", and a class prefix before it ends its line in a blank.
    Everything below a compact node stays on its line. Lines end in a bare
    line feed on every platform, so that texts compare byte for byte.

    The estimate stops as soon as it reaches the room left, so that deciding
    the layout of a large subtree does not walk all of it at each level.

    Pieces are counted as JUCE counts a juce::String, even when they are
    ill-formed UTF-8: the bytes that getNumBytesAsUTF8 counts are written and
    the characters that length() counts advance the column. The text goes to
    its stream in large blocks, and at the end of each print.

    Buffers are not part of the text: their bytes go to the binary stream, one
    after the other in printing order, and the text holds "[offset size]".
*/
class StatePrinter
{
public:
    static constexpr uint64_t maximumLineLength = 140;

    StatePrinter (juce::OutputStream& text, juce::OutputStream& binary);

    /** Prints the node at the current column, without a final line feed. */
    void print (const State& state);

    /** The printed length of the node, give or take, counted until it reaches the limit. */
    uint64_t estimateLength (const State& state, uint64_t limit) const;

private:
    juce::OutputStream& text;
    juce::OutputStream& binary;
    const bool textSharesBinary;
    uint64_t indentationLevel = 0;
    uint64_t column = 0;
    std::vector<bool> compactStack;
    bool lineBreakPending = false;
    std::vector<char> pendingText; // what goes to the text stream next, in its first numPendingBytes
    size_t numPendingBytes = 0;
    mutable std::string leafText;

    struct MeasuredName
    {
        size_t numBytes = 0;
        uint64_t numCharacters = 0;
        bool wellFormed = false;
    };

    mutable StringMeasureCache<MeasuredName> measuredNames; // while printing only
    MeasuredName measureName (const juce::String& name) const;
    bool printing = false;

    void printNode (const State& state);
    void emit (const juce::String& piece);
    void emit (const char* bytes, size_t numBytes, uint64_t numCharacters);
    void emitLiteral (const char* literal);
    void emitName (const juce::String& name);
    char* reserveText (size_t numBytes);
    void makeRoomForText (size_t numBytes);
    void flushText();
    bool isCompact (const State& state) const;
    void printPrefix (const State& state);
    void printValue (const State& state, bool compact);
    void printVariables (const State& state, bool compact);
    void printBuffer (const State& state);
    bool makeLeafText (const State& state) const;
};

} // namespace tov
