#pragma once

#include <juce_core/juce_core.h>
#include <cstdint>
#include <functional>

namespace tov
{

/** A walk over the raw structures of a firmware (SMBIOS) table.

    Each structure is a type byte, a length byte, the rest of its formatted area, and a set of
    zero-terminated strings that ends with two zero bytes. The walk ends at the end-of-table
    structure (type 127, length 4), or when the next header would lie beyond the table.
*/
class SmbiosTable
{
public:
    /** One structure, valid during the visit. */
    class Structure
    {
    public:
        Structure (const uint8_t* start, size_t available, const uint8_t* strings, const uint8_t* stringsEnd) noexcept
            : start (start), available (available), strings (strings), stringsEnd (stringsEnd) {}

        int getType() const noexcept                  { return start[0]; }
        int getLength() const noexcept                { return start[1]; }
        /** The byte at an offset from the structure's start; 0 beyond the table. */
        uint8_t getByte (size_t offset) const noexcept { return offset < available ? start[offset] : 0; }
        /** The little-endian word at an offset. */
        uint16_t getWord (size_t offset) const noexcept { return (uint16_t) (getByte (offset) | (getByte (offset + 1) << 8)); }
        /** The string whose index is the byte at the offset: "" for index 0 and for an index beyond the set. */
        juce::String getString (size_t offset) const;

    private:
        const uint8_t* start;
        size_t available;
        const uint8_t* strings;
        const uint8_t* stringsEnd;
    };

    explicit SmbiosTable (const juce::MemoryBlock& table) noexcept : table (table) {}

    void forEachStructure (const std::function<void (const Structure&)>& visit) const;

private:
    const juce::MemoryBlock& table;
};

} // namespace tov
