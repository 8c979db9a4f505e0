#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace tov
{

/** What short byte strings converted to, kept for the length of one reading (the text
    parser) or across the readings of one thread (the binary reader).

    The names of variables and classes recur throughout a document, and each
    conversion allocates; with the cache a document holds one string per
    distinct name, shared by all its uses. Long strings and the strings
    beyond a few thousand distinct ones are converted every time, so that
    text made of unique names costs little more than without the cache.

    The table is open-addressed and keeps its keys in one block, so that a
    look-up neither allocates nor copies.

    It has no lock: each parser owns its caches for one reading, binary
    readers share those of their thread, and the values handed out (strings,
    interned class expressions) are safe to share.
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
        return get (bytes, size, hashBytes (bytes, size), std::forward<Convert> (convert));
    }

    /** The same, for a reader that hashed the bytes as it scanned them, with startHash and hashByte. */
    template <class Convert>
    Value get (const char* bytes, size_t size, uint32_t hash, Convert&& convert)
    {
        if (size > maximumKeySize)
            return convert();
        if (slots.empty())
            slots.resize (initialNumSlots);
        size_t index = findSlot (hash, bytes, size);
        if (slots[index].isUsed())
            return slots[index].value;

        Value value = convert();
        if (numValues < maximumNumValues)
        {
            if (2 * (numValues + 1) > slots.size())
            {
                grow();
                index = findSlot (hash, bytes, size);
            }
            slots[index] = { hash, (uint32_t) keys.size(), (uint32_t) size, value };
            keys.append (bytes, size);
            ++numValues;
        }
        return value;
    }

    /** No more values will be kept. */
    bool isFull() const noexcept        { return numValues >= maximumNumValues; }

    // FNV-1a: keys are short, and a multiplication per byte is all they need.
    static constexpr uint32_t startHash = 2166136261u;
    static constexpr uint32_t hashByte (uint32_t hash, char byte) noexcept { return (hash ^ (uint8_t) byte) * 16777619u; }

private:
    static constexpr size_t maximumKeySize = 64;
    static constexpr size_t maximumNumValues = 4096;
    static constexpr size_t initialNumSlots = 64;
    static constexpr uint32_t unused = 0xffffffff;

    struct Slot
    {
        uint32_t hash = 0;
        uint32_t offset = 0;
        uint32_t size = unused;
        Value value {};

        bool isUsed() const noexcept { return size != unused; }
    };

    std::vector<Slot> slots; // a power of two of them, at most half used
    std::string keys;
    size_t numValues = 0;

    static uint32_t hashBytes (const char* bytes, size_t size) noexcept
    {
        uint32_t hash = startHash;
        for (size_t i = 0; i < size; ++i)
            hash = hashByte (hash, bytes[i]);
        return hash;
    }

    // The slot of the key, or the unused slot where it would go.
    size_t findSlot (uint32_t hash, const char* bytes, size_t size) const noexcept
    {
        const size_t mask = slots.size() - 1;
        for (size_t index = hash & mask;; index = (index + 1) & mask)
        {
            const auto& slot = slots[index];
            if (! slot.isUsed()
                || (slot.hash == hash && slot.size == size && std::memcmp (keys.data() + slot.offset, bytes, size) == 0))
                return index;
        }
    }

    void grow()
    {
        std::vector<Slot> old (slots.size() * 2);
        old.swap (slots);
        const size_t mask = slots.size() - 1;
        for (auto& slot : old)
        {
            if (! slot.isUsed())
                continue;
            size_t index = slot.hash & mask;
            while (slots[index].isUsed())
                index = (index + 1) & mask;
            slots[index] = std::move (slot);
        }
    }
};

} // namespace tov
