#pragma once

#include <juce_core/juce_core.h>
#include <cstdint>

namespace tov
{

/** The length of the well-formed UTF-8 sequence at the bytes, or 0 for an ill-formed
    one (overlong forms, surrogates, values above U+10FFFF and truncated sequences).
*/
size_t getUtf8SequenceLength (const uint8_t* bytes, size_t available) noexcept;

/** The text of the bytes with each byte of an ill-formed sequence read as U+FFFD.

    A juce::String can carry ill-formed UTF-8, which JUCE's conversions then
    decode inconsistently (an overlong sequence may even swallow the next
    character), so text from outside goes through here first. Well-formed
    bytes are taken as they are.
*/
juce::String makeWellFormedUtf8 (const void* bytes, size_t numBytes);
juce::String makeWellFormedUtf8 (const juce::String& text);

/** What juce::String::getNumBytesAsUTF8 gives, without decoding well-formed text.

    JUCE counts the bytes of the characters it decodes, which for ill-formed
    text can be fewer than the bytes before the terminating zero. Streams write
    that many bytes of such a string, and the forms must keep doing so.
*/
size_t getNumBytesAsUtf8 (const juce::String& text) noexcept;

} // namespace tov
