#pragma once

#include <cstddef>
#include <cstdint>

namespace tov
{

/** A text of fixed capacity that a crash handler can write: no allocation, no lock, no locale.

    What does not fit is cut off; the text stays terminated by a zero byte.
*/
template <size_t capacity>
class CrashText
{
public:
    CrashText() noexcept                                 { text[0] = 0; }

    CrashText& append (const char* s) noexcept
    {
        while (s != nullptr && *s != 0)
            appendCharacter (*s++);
        return *this;
    }

    CrashText& appendCharacter (char c) noexcept
    {
        if (length + 1 < capacity)
        {
            text[length++] = c;
            text[length] = 0;
        }
        return *this;
    }

    /** At least minDigits digits, zero-padded. */
    CrashText& appendHex (uint64_t value, int minDigits = 1, bool upperCase = true) noexcept
    {
        const char* digits = upperCase ? "0123456789ABCDEF" : "0123456789abcdef";
        char reversed[16];
        int count = 0;
        do
        {
            reversed[count++] = digits[value & 0xf];
            value >>= 4;
        }
        while (value != 0);
        for (int i = count; i < minDigits; ++i)
            appendCharacter ('0');
        while (count > 0)
            appendCharacter (reversed[--count]);
        return *this;
    }

    CrashText& appendDecimal (uint64_t value) noexcept
    {
        char reversed[20];
        int count = 0;
        do
        {
            reversed[count++] = (char) ('0' + value % 10);
            value /= 10;
        }
        while (value != 0);
        while (count > 0)
            appendCharacter (reversed[--count]);
        return *this;
    }

    void clear() noexcept                                { length = 0; text[0] = 0; }
    const char* get() const noexcept                     { return text; }
    size_t size() const noexcept                         { return length; }

private:
    char text[capacity];
    size_t length = 0;
};

} // namespace tov
