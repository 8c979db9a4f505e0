#include <Tov/Atomic/NumberExpression.h>
#include <cstdint>
#include <cstdlib>

// Number::evaluateNumberExpression is NumberExpression::evaluate: any text must give either a
// result or an error, never both, without crashing or hanging.
extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    const juce::String expression = juce::String::fromUTF8 (reinterpret_cast<const char*> (data), (int) size);
    juce::String error;
    const juce::String result = tov::NumberExpression::evaluate (expression, error);
    if (error.isNotEmpty() && result.isNotEmpty())
        std::abort();
    return 0;
}
