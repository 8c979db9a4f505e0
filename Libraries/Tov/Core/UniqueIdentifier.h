#pragma once

#include <juce_core/juce_core.h>
#include <cstdint>

namespace tov
{

/** The 64-bit identity of an object.

    Null (0) until the object joins a space; 1 is the root of a space, and
    0xdddddddddddddddd marks an object that has been deleted. Identifiers
    of clones come from xor-ing with a mask, which keeps references inside
    the clone pointing inside the clone.
*/
class UniqueIdentifier
{
public:
    constexpr UniqueIdentifier() noexcept = default;
    constexpr explicit UniqueIdentifier (uint64_t value) noexcept : value (value) {}

    static constexpr UniqueIdentifier getRootIdentifier() noexcept           { return UniqueIdentifier (1); }
    static constexpr UniqueIdentifier getDeletedObjectIdentifier() noexcept  { return UniqueIdentifier (0xddddddddddddddddull); }

    constexpr uint64_t getInt64() const noexcept   { return value; }
    void setFromInt64 (uint64_t newValue) noexcept { value = newValue; }

    constexpr bool isNull() const noexcept         { return value == 0; }
    constexpr bool isNotNull() const noexcept      { return value != 0; }

    constexpr bool operator== (UniqueIdentifier other) const noexcept { return value == other.value; }
    constexpr bool operator!= (UniqueIdentifier other) const noexcept { return value != other.value; }
    constexpr bool operator<  (UniqueIdentifier other) const noexcept { return value < other.value; }
    constexpr UniqueIdentifier operator^ (UniqueIdentifier other) const noexcept { return UniqueIdentifier (value ^ other.value); }

    /** "nil" for the null identifier, otherwise "@" and the value in hexadecimal. */
    juce::String to64BitsHexadecimalString() const;

    /** Reads the hexadecimal digits of the text; a leading "@" is skipped. */
    void setFrom64BitsHexadecimalString (const juce::String& text);

    /** Puts the top 16 bits in time_mid and the low 48 in node, RFC 4122 compliant. */
    juce::Uuid convertToUuid() const;

    /** True for the null UUID and for the UUIDs that convertToUuid makes. */
    static bool isConvertibleFromUuid (const juce::Uuid& uuid);

    /** With check set, a UUID that convertToUuid cannot have made gives the null identifier. */
    static UniqueIdentifier convertFromUuid (const juce::Uuid& uuid, bool check = true);

    /** Sets the version nibble to 4 and the variant bits to 10. */
    static juce::Uuid makeUuidCompliantToRfc4122 (const juce::Uuid& uuid);

private:
    uint64_t value = 0;
};

struct UniqueIdentifierHash
{
    size_t operator() (UniqueIdentifier identifier) const noexcept { return std::hash<uint64_t>() (identifier.getInt64()); }
};

} // namespace tov
