#include "StateHasher.h"
#include <cstring>

namespace tov
{

static constexpr uint64_t fnvOffsetBasis = 0xcbf29ce484222325ull;
static constexpr uint64_t fnvPrime = 0x100000001b3ull;

uint64_t StateHasher::fnv1a (const uint8_t* bytes, size_t numBytes) noexcept
{
    uint64_t hash = fnvOffsetBasis;
    for (size_t i = 0; i < numBytes; ++i)
        hash = (hash ^ bytes[i]) * fnvPrime;
    return hash;
}

// The low numBytes bytes of the word, least significant first, whatever the
// byte order of the machine: hashes must agree between processes that share texts.
// The bytes are taken by shifting rather than copied out: every identifier looked up in a
// hash map comes through here.
void StateHasher::combineUnsigned (uint64_t word, size_t numBytes) noexcept
{
    uint64_t hash = fnvOffsetBasis;
    for (size_t i = 0; i < numBytes; ++i)
        hash = (hash ^ ((word >> (8 * i)) & 0xff)) * fnvPrime;
    value = ((value >> 2) + 0x9e3779b9ull + (value << 6) + hash) ^ value;
}

void StateHasher::pushVoid() noexcept                     { combineUnsigned (51, 4); }
void StateHasher::pushBoolean (bool b) noexcept           { combineUnsigned (b ? 1 : 0, 1); }
void StateHasher::pushInteger (int64_t integer) noexcept  { combineUnsigned ((uint64_t) integer, 8); }
void StateHasher::pushString (const juce::String& text) noexcept { combineUnsigned ((uint64_t) text.hashCode64(), 8); }
void StateHasher::pushPointer (const void* pointer) noexcept     { combineUnsigned ((uint64_t) (uintptr_t) pointer, 8); }
void StateHasher::pushUniqueIdentifier (UniqueIdentifier identifier) noexcept { combineUnsigned (identifier.getInt64(), 8); }

void StateHasher::pushReal (double real) noexcept
{
    if (real == 0.0)
        real = 0.0;
    uint64_t bits;
    std::memcpy (&bits, &real, sizeof (bits));
    combineUnsigned (bits, 8);
}

} // namespace tov
