#pragma once

#include <juce_core/juce_core.h>
#include <cstddef>
#include <cstdint>

namespace tov
{

/** What was worked out about strings that live as long as a walk of a tree,
    kept by the address of their text.

    The names of variables recur throughout a tree and share their text, so
    the first use of a name measures it and the others find the measure. An
    address stands for one text only while the strings live: clear the cache
    before a walk of another tree.

    It has no lock: each printer or binary writer owns one for its walks, on
    the thread that walks, while the tree it measures may be read by others.
*/
template <class Measure, size_t numEntries = 64>
class StringMeasureCache
{
public:
    /** The measure of the text, from the cache or from compute(). */
    template <class Compute>
    const Measure& get (const juce::String& text, Compute&& compute)
    {
        const char* bytes = text.toRawUTF8();
        auto& entry = entries[(reinterpret_cast<uintptr_t> (bytes) >> 4) % numEntries];
        if (entry.bytes != bytes)
        {
            entry.measure = compute();
            entry.bytes = bytes;
        }
        return entry.measure;
    }

    void clear() noexcept
    {
        for (auto& entry : entries)
            entry.bytes = nullptr;
    }

private:
    struct Entry
    {
        const char* bytes = nullptr;
        Measure measure {};
    };

    Entry entries[numEntries];
};

} // namespace tov
