#pragma once

#include "UniqueIdentifier.h"
#include <cstdint>

namespace tov
{

/** A 64-bit hash accumulator for State trees.

    Each push combines one value into the accumulator with
        h = ((h >> 2) + 0x9e3779b9 + (h << 6) + fnv1a (value)) ^ h
    where fnv1a is the 64-bit FNV-1a hash of the value's little-endian bytes.
    The width of each value (1 byte for a boolean, 4 for the void marker, 8 for
    the rest) is part of the hash, so the same number pushed as an integer and
    as a boolean hashes differently.
*/
class StateHasher
{
public:
    StateHasher() noexcept = default;

    /** Combines the 32-bit marker 51 that stands for "no value". */
    void pushVoid() noexcept;
    void pushBoolean (bool value) noexcept;
    void pushInteger (int64_t value) noexcept;
    /** Both zeros hash as positive zero, since they compare equal as numbers. */
    void pushReal (double value) noexcept;
    /** Combines juce::String::hashCode64 of the text. */
    void pushString (const juce::String& text) noexcept;
    void pushPointer (const void* pointer) noexcept;
    void pushUniqueIdentifier (UniqueIdentifier identifier) noexcept;

    uint64_t get() const noexcept { return value; }

    /** FNV-1a with 64 bits over the bytes. */
    static uint64_t fnv1a (const uint8_t* bytes, size_t numBytes) noexcept;

private:
    uint64_t value = 0;

    void combineUnsigned (uint64_t word, size_t numBytes) noexcept;
};

} // namespace tov
