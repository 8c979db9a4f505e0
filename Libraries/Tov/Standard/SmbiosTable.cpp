#include "SmbiosTable.h"

namespace tov
{

juce::String SmbiosTable::Structure::getString (size_t offset) const
{
    int index = getByte (offset);
    if (index == 0)
        return {};
    for (const uint8_t* s = strings; s < stringsEnd && *s != 0;)
    {
        const uint8_t* end = s;
        while (end < stringsEnd && *end != 0)
            ++end;
        if (--index == 0)
            return juce::String::fromUTF8 ((const char*) s, (int) (end - s));
        s = end + 1;
    }
    return {};
}

void SmbiosTable::forEachStructure (const std::function<void (const Structure&)>& visit) const
{
    const auto* data = static_cast<const uint8_t*> (table.getData());
    const size_t size = table.getSize();
    size_t offset = 0;
    while (offset + 4 <= size)
    {
        const auto* start = data + offset;
        const int type = start[0], length = start[1];
        if ((type == 127 && length == 4) || length < 4)
            return;

        // The string set runs from the end of the formatted area to a double zero.
        const auto* strings = start + juce::jmin ((size_t) length, size - offset);
        const auto* limit = data + size;
        const auto* end = strings;
        while (end + 1 < limit && ! (end[0] == 0 && end[1] == 0))
            ++end;
        if (end + 1 >= limit)
            end = limit;   // no double zero: the set runs to the end of the table
        visit (Structure (start, size - offset, strings, end));
        offset = (size_t) (end - data) + 2;
    }
}

} // namespace tov
