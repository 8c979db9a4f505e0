// libFuzzer target for Number::evaluateNumberExpression, which reads what users
// type into number fields.
//
// Any text must give either a result or an error, never both, without crashing
// or hanging; an error must be one of the evaluator's own words. A failed
// property traps, so the fuzzer reports it like a crash.
//
//   NumberExpressionFuzzer work Corpus/NumberExpression -dict=NumberExpression.dict -max_len=4096
#include <Tov/Atomic/Number.h>
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

    bool isKnownError (const juce::String& error)
    {
        return error == "missing closing parenthesis"
            || error.startsWith ("unexcepted operator '")
            || error.startsWith ("unexcepted token '");
    }
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    const auto expression = juce::String::fromUTF8 (reinterpret_cast<const char*> (data), (int) size);
    juce::String error;
    const auto result = Number::evaluateNumberExpression (expression, error);
    check (error.isEmpty() || (result.isEmpty() && isKnownError (error)));
    return 0;
}
