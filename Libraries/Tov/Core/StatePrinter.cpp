#include "StatePrinter.h"
#include "State.h"
#include "ClassExpression.h"

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
}

StatePrinter::StatePrinter (juce::OutputStream& text, juce::OutputStream& binary)
    : text (text), binary (binary)
{
}

void StatePrinter::emit (const juce::String& piece)
{
    if (lineBreakPending)
    {
        text.writeByte ('\n');
        for (uint64_t i = 0; i < indentationLevel; ++i)
            text.write ("  ", 2);
        column = 2 * indentationLevel;
        lineBreakPending = false;
    }
    text.write (piece.toRawUTF8(), piece.getNumBytesAsUTF8());
    column += (uint64_t) piece.length();
}

// Inside a compact node everything is compact. Otherwise the node must fit in
// what remains of the line, counted from the current column, or from the
// indentation when nothing stands on the line yet.
bool StatePrinter::isCompact (const State& state) const
{
    if (! compactStack.empty() && compactStack.back())
        return true;
    const uint64_t start = column != 0 ? column : 2 * indentationLevel;
    if (start >= maximumLineLength)
        return false;
    const uint64_t limit = maximumLineLength - start;
    return estimateLength (state, limit) < limit;
}

void StatePrinter::print (const State& state)
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
        emit (State::classToken);
        emit (expression->toString());
        emit (" ");
    }
    if (state.getUniqueIdentifier().isNotNull())
    {
        emit (state.getUniqueIdentifier().to64BitsHexadecimalString());
        emit (" ");
    }
    if (state.getVersionNumber() != 0)
    {
        emit ("#" + versionToString (state.getVersionNumber()));
        emit (" ");
    }
}

void StatePrinter::printValue (const State& state, bool compact)
{
    switch (state.getType())
    {
        case StateType::ownedPointerType:
            // A null target prints nothing after the token (and does not read back).
            emit (juce::String (State::ownedPointerToken) + " ");
            if (auto target = state.getOwnedPointer())
                print (*target);
            break;
        case StateType::variablesType:
            printVariables (state, compact);
            break;
        case StateType::bufferType:
            printBuffer (state);
            break;
        default:
            emit (state.toShortString (1));
            break;
    }
}

void StatePrinter::printVariables (const State& state, bool compact)
{
    const size_t count = state.getNumVariables();
    if (count == 0)
    {
        emit ("void");
        return;
    }

    lineBreakPending = lineBreakPending || ! compact;
    emit (State::openScope);
    lineBreakPending = lineBreakPending || ! compact;
    ++indentationLevel;
    for (size_t i = 0; i < count; ++i)
    {
        const auto& name = state.getVariableName (i);
        if (name.isNotEmpty())
            emit (name + " " + State::assignmentToken + " ");
        print (state.getVariableStateRef (i));
        if (i + 1 < count)
            emit (", ");
        lineBreakPending = lineBreakPending || ! compact;
    }
    --indentationLevel;
    lineBreakPending = lineBreakPending || ! compact;
    emit (State::closeScope);
}

void StatePrinter::printBuffer (const State& state)
{
    const auto& buffer = state.getBuffer();
    emit (bufferToString (binary.getPosition(), buffer.getSize()));
    if (buffer.getSize() != 0)
        binary.write (buffer.getData(), (size_t) buffer.getSize());
}

//==============================================================================
uint64_t StatePrinter::estimateLength (const State& state, uint64_t limit) const
{
    uint64_t total = 0;
    const auto add = [&] (uint64_t amount) { total += amount; return total >= limit; };

    if (auto* expression = state.getClassExpression())
        if (add ((uint64_t) expression->toString().length() + 2))
            return total;
    if (state.getUniqueIdentifier().isNotNull())
        if (add ((uint64_t) state.getUniqueIdentifier().to64BitsHexadecimalString().length() + 1))
            return total;
    if (state.getVersionNumber() != 0)
        if (add ((uint64_t) versionToString (state.getVersionNumber()).length() + 2))
            return total;

    switch (state.getType())
    {
        case StateType::ownedPointerType:
        {
            if (add (3))
                return total;
            auto target = state.getOwnedPointer();
            add (target != nullptr ? estimateLength (*target, limit - total) : 4);
            return total;
        }
        case StateType::variablesType:
        {
            const size_t count = state.getNumVariables();
            if (add (count == 0 ? 2 : 1))
                return total;
            for (size_t i = 0; i < count; ++i)
            {
                const auto& name = state.getVariableName (i);
                if (name.isNotEmpty() && add ((uint64_t) name.length() + 3))
                    return total;
                if (add (estimateLength (state.getVariableStateRef (i), limit - total)))
                    return total;
                if (i + 1 < count && add (2))
                    return total;
            }
            add (1);
            return total;
        }
        case StateType::nativePointerType:
            add (10);
            return total;
        case StateType::bufferType:
            add (numDigits ((juce::int64) binary.getPosition()) + numDigits ((juce::uint64) state.getBuffer().getSize()) + 3);
            return total;
        default:
            add ((uint64_t) state.toShortString (1).length());
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
