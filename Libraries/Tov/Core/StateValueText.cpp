#include "StateValueText.h"
#include "WellFormedUtf8.h"
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>

namespace tov
{

namespace
{
    // "00" to "99", so that digits are written two at a time.
    struct DigitPairs
    {
        constexpr DigitPairs()
        {
            for (int i = 0; i < 100; ++i)
            {
                pairs[2 * i] = (char) ('0' + i / 10);
                pairs[2 * i + 1] = (char) ('0' + i % 10);
            }
        }

        char pairs[200] = {};
    };

    constexpr DigitPairs digitPairs;

    // The digits of a number below 10^20, at the end of the buffer; where they start.
    char* writeDigits (char* end, uint64_t number) noexcept
    {
        for (; number >= 100; number /= 100)
        {
            end -= 2;
            std::memcpy (end, digitPairs.pairs + 2 * (number % 100), 2);
        }
        if (number >= 10)
        {
            end -= 2;
            std::memcpy (end, digitPairs.pairs + 2 * number, 2);
            return end;
        }
        *--end = (char) ('0' + number);
        return end;
    }

    // The value times 10^12, rounded to the nearest integer and to even on a
    // tie, as "%.12f" rounds: the value is m * 2^e exactly, so the product is
    // m * 5^12 * 2^(e + 12), which 128 bits hold. Values from 2^63 / 10^12 up
    // are left to std::to_chars.
    bool scaleByTenToTheTwelfth (double magnitude, uint64_t& scaled) noexcept
    {
       #if defined (__SIZEOF_INT128__)
        if (! (magnitude < 9.0e6))
            return false;
        uint64_t bits;
        std::memcpy (&bits, &magnitude, sizeof (bits));
        const auto biasedExponent = (int) (bits >> 52);
        const uint64_t mantissa = (bits & ((1ull << 52) - 1)) | (biasedExponent != 0 ? 1ull << 52 : 0);
        const int exponent = (biasedExponent != 0 ? biasedExponent : 1) - 1075;
        const auto product = (unsigned __int128) mantissa * 244140625u; // 5^12, below 2^28
        const int shift = exponent + 12;
        if (shift >= 0)
        {
            scaled = (uint64_t) (product << shift);
            return true;
        }
        if (-shift > 100) // the product is below 2^81: less than half of one
        {
            scaled = 0;
            return true;
        }
        const auto one = (unsigned __int128) 1 << -shift;
        const auto remainder = product & (one - 1);
        scaled = (uint64_t) (product >> -shift);
        if (remainder > one / 2 || (remainder == one / 2 && (scaled & 1) != 0))
            ++scaled;
        return true;
       #else
        juce::ignoreUnused (magnitude, scaled);
        return false;
       #endif
    }

    // The fixed form of a value of moderate size without its trailing zeros,
    // built from its scaled integer.
    bool appendTwelveDecimals (double value, std::string& text)
    {
        uint64_t scaled;
        if (! scaleByTenToTheTwelfth (std::fabs (value), scaled))
            return false;

        constexpr uint64_t tenToTheTwelfth = 1000000000000ull;
        char buffer[32];
        char* const end = buffer + sizeof (buffer);
        char* const point = end - 13;
        writeDigits (end, scaled % tenToTheTwelfth + tenToTheTwelfth); // the leading 1 keeps the decimals' zeros
        *point = '.';
        char* start = writeDigits (point, scaled / tenToTheTwelfth);
        if (std::signbit (value))
            *--start = '-';
        const char* last = end;
        while (last[-1] == '0')
            --last;
        text.append (start, (size_t) (last - start));
        return true;
    }
}

// The fixed form comes from std::to_chars, which gives the exact digits that
// the C library's "%.12f" gives, as JUCE's stream conversion does, without a
// stream and its locale; moderate values, most of them, are worked out here.
void appendRealText (double value, std::string& text)
{
    const double largest = std::numeric_limits<double>::max();
    if (value == largest)
        text += "+oo";
    else if (value == -largest)
        text += "-oo";
    else if (! std::isfinite (value))
        text += "0.0";
    else if (! appendTwelveDecimals (value, text))
    {
        constexpr size_t juceBufferSize = 48;
        char buffer[std::numeric_limits<double>::max_exponent10 + 32];
        const auto end = std::to_chars (buffer, buffer + sizeof (buffer), value, std::chars_format::fixed, 12).ptr;
        std::string_view fixed (buffer, std::min ((size_t) (end - buffer), juceBufferSize));
        if (fixed.find ('.') == std::string_view::npos)
        {
            text.append (fixed);
            text += '.';
            return;
        }
        while (fixed.back() == '0')
            fixed.remove_suffix (1);
        text.append (fixed);
    }
}

bool appendQuotedText (const juce::String& value, std::string& text)
{
    const char* bytes = value.toRawUTF8();
    const size_t numBytes = std::strlen (bytes);
    if (! isWellFormedUtf8 (bytes, numBytes))
        return false;

    text += '"';
    for (size_t i = 0; i < numBytes; ++i)
    {
        if (bytes[i] == '\\' || bytes[i] == '"')
            text += '\\';
        text += bytes[i];
    }
    text += '"';
    return true;
}

} // namespace tov
