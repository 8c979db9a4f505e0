#pragma once

#include <juce_core/juce_core.h>
#include <array>

namespace tov
{

/** The names of a profiler's events as strings, each made once for its text.

    A scope's name is almost always a literal or a long-lived string, whose text stays where it
    is: the string made for it last time is found by the text's address, and used again when
    it still reads the same. Anything else only costs a new string. One thread uses it.
*/
class ProfilerNames
{
public:
    juce::String get (juce::StringRef name)
    {
        const auto* text = name.text.getAddress();
        auto& entry = entries[(reinterpret_cast<uintptr_t> (text) / alignof (std::max_align_t)) % entries.size()];
        if (entry.text != text || entry.name != name)
            entry = { text, juce::String (name) };
        return entry.name;
    }

private:
    struct Entry
    {
        const char* text = nullptr;
        juce::String name;
    };
    std::array<Entry, 64> entries;
};

} // namespace tov
