#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

namespace tov
{

/** What short byte strings converted to, kept for the length of one reading.

    The names of variables and classes recur throughout a document, and each
    conversion allocates; with the cache a document holds one string per
    distinct name, shared by all its uses. Long strings and the strings
    beyond a few thousand distinct ones are converted every time, so that
    text made of unique names costs little more than without the cache.
*/
template <class Value>
class ConversionCache
{
public:
    /** The value of the bytes, from the cache or from convert(). */
    template <class Convert>
    Value get (const char* bytes, size_t size, Convert&& convert)
    {
        if (size > maximumKeySize)
            return convert();

        key.assign (bytes, size);
        const auto found = values.find (key);
        if (found != values.end())
            return found->second;

        Value value = convert();
        if (values.size() < maximumNumValues)
            values.emplace (key, value);
        return value;
    }

private:
    static constexpr size_t maximumKeySize = 64;
    static constexpr size_t maximumNumValues = 4096;

    std::unordered_map<std::string, Value> values;
    std::string key; // reused, so that looking up allocates nothing
};

} // namespace tov
