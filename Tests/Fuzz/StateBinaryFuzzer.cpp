// libFuzzer target for the binary stream form of States, which arrives from the network.
//
// Each input is read as a State in optional form. When it reads, writing it and
// reading the bytes again must give an equal tree and the same bytes: the form
// has one spelling per tree. A failed property traps, so the fuzzer reports it.
#include <Tov/Core/State.h>
#include <cstddef>
#include <cstdint>

using namespace tov;

namespace
{
    void check (bool condition)
    {
        if (! condition)
            __builtin_trap();
    }

    juce::MemoryBlock write (const State* state)
    {
        juce::MemoryOutputStream output;
        check (State::toBinary (state, output));
        return output.getMemoryBlock();
    }
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    juce::MemoryInputStream input (data, size, false);
    std::shared_ptr<State> state;
    juce::String error;
    if (! State::loadFromBinary (input, state, error))
    {
        check (error.isNotEmpty());
        return 0;
    }

    const auto written = write (state.get());
    juce::MemoryInputStream again (written, false);
    std::shared_ptr<State> reread;
    check (State::loadFromBinary (again, reread, error));
    check (State::equals (state, reread));
    check (write (reread.get()) == written);
    if (state != nullptr)
        (void) state->toShortString (3);
    return 0;
}
