#include "StatePrinter.h"
#include "State.h"
#include "ClassExpression.h"
#include "StateValueText.h"
#include "WellFormedUtf8.h"
#include <algorithm>
#include <charconv>
#include <cstring>

namespace tov
{

namespace
{
    // The version is written as a 32-bit number.
    juce::String versionToString (uint64_t version)
    {
        return juce::String ((int) (uint32_t) version);
    }

    template <class Number>
    uint64_t numDigits (Number number)
    {
        return (uint64_t) juce::String (number).length();
    }

    juce::String bufferToString (juce::int64 offset, juce::uint64 size)
    {
        return "[" + juce::String (offset) + " " + juce::String (size) + "]";
    }

    // The characters of well-formed UTF-8: the bytes that do not continue a sequence.
    uint64_t countCharacters (const char* bytes, size_t numBytes) noexcept
    {
        uint64_t count = 0;
        for (size_t i = 0; i < numBytes; ++i)
            count += ((uint8_t) bytes[i] & 0xc0) != 0x80 ? 1 : 0;
        return count;
    }

    // Counts the bytes up to the terminating zero when they are all ASCII, as
    // names and class names mostly are: then bytes and characters are one.
    bool isAscii (const char* bytes, size_t& numBytes) noexcept
    {
        numBytes = 0;
        for (; bytes[numBytes] != 0; ++numBytes)
            if ((uint8_t) bytes[numBytes] >= 0x80)
                return false;
        return true;
    }

    // The bytes and characters of a piece as JUCE counts them, without decoding
    // well-formed text; false when the piece is ill-formed.
    bool measure (const juce::String& piece, size_t& numBytes, uint64_t& numCharacters)
    {
        const char* bytes = piece.toRawUTF8();
        if (isAscii (bytes, numBytes))
        {
            numCharacters = numBytes;
            return true;
        }
        numBytes += std::strlen (bytes + numBytes);
        if (isWellFormedUtf8 (bytes, numBytes))
        {
            numCharacters = countCharacters (bytes, numBytes);
            return true;
        }
        numBytes = piece.getNumBytesAsUTF8();
        numCharacters = (uint64_t) piece.length();
        return false;
    }

    uint64_t countCharacters (const juce::String& text)
    {
        size_t numBytes;
        uint64_t numCharacters;
        measure (text, numBytes, numCharacters);
        return numCharacters;
    }

    // Only lists and owned pointers lay out nodes below them.
    bool holdsNodes (const State& state) noexcept
    {
        return state.getType() == StateType::variablesType || state.getType() == StateType::ownedPointerType;
    }

    // The tokens of the form are a byte or two long; the estimates below are
    // counted from their texts when the code is compiled.
    constexpr size_t getLength (const char* literal) noexcept
    {
        size_t length = 0;
        while (literal[length] != 0)
            ++length;
        return length;
    }

    // Larger blocks gain nothing; smaller ones cost a call to the stream more often.
    constexpr size_t textBlockSize = 1 << 16;

    // What estimateLength counts besides the texts of names and values, in
    // characters: the literal texts of the form that they stand for.
    namespace estimated
    {
        // The class token "'" before a class expression, and the blank after it.
        constexpr uint64_t aroundClassExpression = getLength ("' ");
        // The blank after an identifier.
        constexpr uint64_t afterIdentifier = getLength (" ");
        // The "#" before a version, and the blank after it.
        constexpr uint64_t aroundVersion = getLength ("# ");
        // The owned pointer token "=>", and the blank after it.
        constexpr uint64_t ownedPointerToken = getLength ("=> ");
        // A null target prints nothing, but counts as "void" would.
        constexpr uint64_t nullTarget = getLength ("void");
        // The "{" that opens a list.
        constexpr uint64_t openScope = getLength ("{");
        // The "}" that closes a list.
        constexpr uint64_t closeScope = getLength ("}");
        // An empty list counts as "{ }" would, although it prints as "void": one more than its braces.
        constexpr uint64_t emptyList = getLength ("{ }") - openScope - closeScope;
        // The assignment token "=" between blanks, after a variable's name.
        constexpr uint64_t assignment = getLength (" = ");
        // The ", " between variables.
        constexpr uint64_t variableSeparator = getLength (", ");
        // A native pointer counts as "0x" and eight hexadecimal digits, whatever its value.
        constexpr uint64_t nativePointer = getLength ("0x00000000");
        // The "[", the blank between offset and size, and the "]" of a buffer.
        constexpr uint64_t aroundBuffer = getLength ("[ ]");
    }
}

// When the text and the buffers share a stream, each piece goes out at once, so
// that the offsets of buffers count the text before them.
StatePrinter::StatePrinter (juce::OutputStream& text, juce::OutputStream& binary)
    : text (text), binary (binary), textSharesBinary (&text == &binary)
{
}

void StatePrinter::emit (const juce::String& piece)
{
    size_t numBytes;
    uint64_t numCharacters;
    measure (piece, numBytes, numCharacters);
    emit (piece.toRawUTF8(), numBytes, numCharacters);
}

void StatePrinter::emitLiteral (const char* literal)
{
    const size_t numBytes = getLength (literal);
    emit (literal, numBytes, numBytes);
}

// Room for the bytes at the end of the pending text, which goes to the stream
// first when the block would overflow.
inline char* StatePrinter::reserveText (size_t numBytes)
{
    if (numPendingBytes + numBytes > pendingText.size())
        makeRoomForText (numBytes);
    char* destination = pendingText.data() + numPendingBytes;
    numPendingBytes += numBytes;
    return destination;
}

void StatePrinter::makeRoomForText (size_t numBytes)
{
    flushText();
    if (numBytes > pendingText.size())
        pendingText.resize (std::max (numBytes, textBlockSize));
}

void StatePrinter::emit (const char* bytes, size_t numBytes, uint64_t numCharacters)
{
    if (lineBreakPending)
    {
        const auto indentation = (size_t) (2 * indentationLevel);
        char* line = reserveText (1 + indentation);
        line[0] = '\n';
        std::memset (line + 1, ' ', indentation);
        column = 2 * indentationLevel;
        lineBreakPending = false;
    }
    std::memcpy (reserveText (numBytes), bytes, numBytes);
    column += numCharacters;
    if (textSharesBinary)
        flushText();
}

void StatePrinter::flushText()
{
    if (numPendingBytes != 0)
        text.write (pendingText.data(), numPendingBytes);
    numPendingBytes = 0;
}

// Inside a compact node everything is compact. Otherwise the node must fit in
// what remains of the line, counted from the current column, or from the
// indentation when nothing stands on the line yet.
bool StatePrinter::isCompact (const State& state) const
{
    if (! compactStack.empty() && compactStack.back())
        return true;
    if (! holdsNodes (state))
        return true; // the layout of a leaf is its text alone: not worth measuring
    const uint64_t start = column != 0 ? column : 2 * indentationLevel;
    if (start >= maximumLineLength)
        return false;
    const uint64_t limit = maximumLineLength - start;
    return estimateLength (state, limit) < limit;
}

void StatePrinter::print (const State& state)
{
    measuredNames.clear();
    printing = true;
    printNode (state);
    printing = false;
    flushText();
}

void StatePrinter::printNode (const State& state)
{
    const bool compact = isCompact (state);
    compactStack.push_back (compact);
    printPrefix (state);
    printValue (state, compact);
    compactStack.pop_back();
}

void StatePrinter::printPrefix (const State& state)
{
    if (auto* expression = state.getClassExpression())
    {
        emitLiteral (State::classToken);
        emit (expression->toString());
        emitLiteral (" ");
    }
    if (state.getUniqueIdentifier().isNotNull())
    {
        emit (state.getUniqueIdentifier().to64BitsHexadecimalString());
        emitLiteral (" ");
    }
    if (state.getVersionNumber() != 0)
    {
        emit ("#" + versionToString (state.getVersionNumber()));
        emitLiteral (" ");
    }
}

void StatePrinter::printValue (const State& state, bool compact)
{
    switch (state.getType())
    {
        case StateType::ownedPointerType:
            // A null target prints nothing after the token (and does not read back).
            emitLiteral (State::ownedPointerToken);
            emitLiteral (" ");
            if (auto target = state.getOwnedPointer())
                printNode (*target);
            break;
        case StateType::variablesType:
            printVariables (state, compact);
            break;
        case StateType::bufferType:
            printBuffer (state);
            break;
        default:
            if (makeLeafText (state))
                emit (leafText.data(), leafText.size(), countCharacters (leafText.data(), leafText.size()));
            else
                emit (state.toShortString (1));
            break;
    }
}

void StatePrinter::printVariables (const State& state, bool compact)
{
    const size_t count = state.getNumVariables();
    if (count == 0)
    {
        emitLiteral ("void");
        return;
    }

    lineBreakPending = lineBreakPending || ! compact;
    emitLiteral (State::openScope);
    lineBreakPending = lineBreakPending || ! compact;
    ++indentationLevel;
    for (size_t i = 0; i < count; ++i)
    {
        const auto& name = state.getVariableName (i);
        if (name.isNotEmpty())
            emitName (name);
        printNode (state.getVariableStateRef (i));
        if (i + 1 < count)
            emitLiteral (", ");
        lineBreakPending = lineBreakPending || ! compact;
    }
    --indentationLevel;
    lineBreakPending = lineBreakPending || ! compact;
    emitLiteral (State::closeScope);
}

// Names recur throughout a tree, whose strings live as long as it does: their
// measures are kept while it prints.
StatePrinter::MeasuredName StatePrinter::measureName (const juce::String& name) const
{
    const auto measureNow = [&name]
    {
        MeasuredName measured;
        measured.wellFormed = measure (name, measured.numBytes, measured.numCharacters);
        return measured;
    };
    return printing ? measuredNames.get (name, measureNow) : measureNow();
}

// An ill-formed name is one piece with its " = ", as JUCE counts the two together.
void StatePrinter::emitName (const juce::String& name)
{
    const auto measured = measureName (name);
    if (! measured.wellFormed)
    {
        emit (name + " " + State::assignmentToken + " ");
        return;
    }
    emit (name.toRawUTF8(), measured.numBytes, measured.numCharacters);
    emitLiteral (" = "); // the assignment token between blanks
}

void StatePrinter::printBuffer (const State& state)
{
    const auto& buffer = state.getBuffer();
    emit (bufferToString (binary.getPosition(), buffer.getSize()));
    if (buffer.getSize() != 0)
        binary.write (buffer.getData(), (size_t) buffer.getSize());
}

// The text of the plain values, which the tree is mostly made of, without the
// juce::String of toShortString: false for the other values.
bool StatePrinter::makeLeafText (const State& state) const
{
    leafText.clear();
    switch (state.getType())
    {
        case StateType::voidType:     leafText += "void"; return true;
        case StateType::booleanType:  leafText += state.getBoolean() ? "true" : "false"; return true;
        case StateType::realType:     appendRealText (state.getReal(), leafText); return true;
        case StateType::stringType:   return appendQuotedText (state.getString(), leafText);
        case StateType::integerType:
        {
            char digits[24];
            leafText.append (digits, (size_t) (std::to_chars (digits, digits + sizeof (digits), state.getInteger()).ptr - digits));
            return true;
        }
        default:                      return false;
    }
}

//==============================================================================
uint64_t StatePrinter::estimateLength (const State& state, uint64_t limit) const
{
    uint64_t total = 0;
    const auto add = [&] (uint64_t amount) { total += amount; return total >= limit; };

    if (auto* expression = state.getClassExpression())
        if (add (countCharacters (expression->toString()) + estimated::aroundClassExpression))
            return total;
    if (state.getUniqueIdentifier().isNotNull())
        if (add ((uint64_t) state.getUniqueIdentifier().to64BitsHexadecimalString().length() + estimated::afterIdentifier))
            return total;
    if (state.getVersionNumber() != 0)
        if (add ((uint64_t) versionToString (state.getVersionNumber()).length() + estimated::aroundVersion))
            return total;

    switch (state.getType())
    {
        case StateType::ownedPointerType:
        {
            if (add (estimated::ownedPointerToken))
                return total;
            auto target = state.getOwnedPointer();
            add (target != nullptr ? estimateLength (*target, limit - total) : estimated::nullTarget);
            return total;
        }
        case StateType::variablesType:
        {
            const size_t count = state.getNumVariables();
            if (add (estimated::openScope + (count == 0 ? estimated::emptyList : 0)))
                return total;
            for (size_t i = 0; i < count; ++i)
            {
                const auto& name = state.getVariableName (i);
                if (name.isNotEmpty() && add (measureName (name).numCharacters + estimated::assignment))
                    return total;
                if (add (estimateLength (state.getVariableStateRef (i), limit - total)))
                    return total;
                if (i + 1 < count && add (estimated::variableSeparator))
                    return total;
            }
            add (estimated::closeScope);
            return total;
        }
        case StateType::nativePointerType:
            add (estimated::nativePointer);
            return total;
        case StateType::bufferType:
            add (numDigits ((juce::int64) binary.getPosition()) + numDigits ((juce::uint64) state.getBuffer().getSize())
                 + estimated::aroundBuffer);
            return total;
        default:
            add (makeLeafText (state) ? countCharacters (leafText.data(), leafText.size()) : (uint64_t) state.toShortString (1).length());
            return total;
    }
}

//==============================================================================
void State::print (juce::OutputStream& text, juce::OutputStream& binary) const
{
    StatePrinter printer (text, binary);
    printer.print (*this);
    text.writeByte ('\n');
}

juce::String State::saveToString() const
{
    juce::MemoryOutputStream text (32), binary (32);
    print (text, binary);
    return text.toUTF8();
}

} // namespace tov
