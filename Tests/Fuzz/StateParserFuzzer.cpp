// libFuzzer target for the State text parser, the front door of every document.
//
// Each input is parsed as a State text. When it parses, the tree also goes
// through the printer, the parser again (on the printed text), hashing and
// cloning, and the properties that hold for every tree are checked: a clone
// with a null mask equals its source and hashes the same, and once a printed
// text has been read back, printing and reading no longer change it. (The
// first reading may fail or differ: versions print as 32-bit numbers, reals
// with 12 decimals, and template arguments without their buffers.) A text
// without binary stream is also read by the rules alone, as a parser callback
// makes the parser do: the reader of plain texts must build the same tree and
// report the same errors. A failed property traps, so the fuzzer reports it
// like a crash.
#include <Tov/Core/State.h>
#include <Tov/Core/StateParserCallback.h>
#include <Tov/Core/ClassExpression.h>
#include <Tov/Standard/ExecutionContext.h>
#include <cstddef>
#include <cstdint>
#include <cstring>

using namespace tov;

namespace
{
    void check (bool condition)
    {
        if (! condition)
            __builtin_trap();
    }

    void exerciseTree (const State& state)
    {
        auto clone = state.clone (UniqueIdentifier());
        check (*clone == state);
        check (clone->computeHash() == state.computeHash());

        (void) state.clone (UniqueIdentifier (0x5a5a));

        juce::MemoryOutputStream text, binary;
        state.print (text, binary);
        (void) state.toShortString (2);

        ExecutionContext silent;
        auto reread = State::createFromStateString (silent, text.toUTF8(), "printed");
        if (reread == nullptr)
            return;
        const auto printedOnce = reread->saveToString();
        auto rereadAgain = State::createFromStateString (silent, printedOnce, "printed again");
        check (rereadAgain != nullptr);
        check (rereadAgain->saveToString() == printedOnce);
    }
}

namespace
{
    struct PassingCallback : public StateParserCallback
    {
        bool stateParsed (State&) override { return true; }
    };

    struct ErrorRecorder : public ExecutionContext
    {
        juce::StringArray errors;
        void error (const juce::String& message, const Object*) override { errors.add (message); }
    };

    juce::String describeParse (const uint8_t* data, size_t size, bool byTheRules)
    {
        ErrorRecorder context;
        PassingCallback callback;
        auto state = State::createFromStateStringBuffer (context, data, (uint64_t) size, "fuzz", byTheRules ? &callback : nullptr);
        juce::MemoryOutputStream description;
        State::toBinary (state.get(), description);
        return juce::String::toHexString (description.getData(), (int) description.getDataSize()) + "\n"
             + context.errors.joinIntoString ("\n");
    }
}

// An input with a zero byte is a text and, after the zero, the binary stream
// that its buffers are read from; any other input is a text alone.
extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    ExecutionContext context;
    std::shared_ptr<State> state;
    if (auto* zero = static_cast<const uint8_t*> (std::memchr (data, 0, size)))
    {
        const auto textSize = (size_t) (zero - data);
        juce::MemoryInputStream text (data, textSize, false), binary (zero + 1, size - textSize - 1, false);
        state = State::parse (context, text, binary, "fuzz");
    }
    else
    {
        state = State::createFromStateStringBuffer (context, data, (uint64_t) size, "fuzz");
        check (describeParse (data, size, false) == describeParse (data, size, true));
    }
    if (state != nullptr)
        exerciseTree (*state);

    // The same bytes as a class expression, which shares the lexer.
    juce::String error;
    (void) createClassExpressionFromString (juce::String::createStringFromData (data, (int) size), &error);
    return 0;
}
