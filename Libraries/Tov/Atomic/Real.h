#pragma once

#include "Number.h"
#include "../Core/ValueObject.h"

namespace tov
{

/** A double, saved as a real State; "+oo" stands for the largest finite double. */
class Real : public ValueObject<double, Number>
{
public:
    TOV_DECLARE_CLASS (Real, Number)

    explicit Real (double value = 0.0) : ValueObject (value) {}

    void reset (bool notify = true)                  { set (0.0, notify); }
    void increment (double amount = 1.0, bool notify = true)  { set (value + amount, notify); }
    void decrement (double amount = 1.0, bool notify = true)  { set (value - amount, notify); }

    bool isValid() const noexcept                    { return isValid (value); }
    bool isNan() const noexcept                      { return isNan (value); }
    bool isInfinite() const noexcept                 { return isInfinite (value); }

    //==============================================================================
    /** Neither NaN nor an IEEE infinity. */
    static bool isValid (double number) noexcept;
    static bool isNan (double number) noexcept;
    /** An IEEE infinity or one of the family's stand-ins for it. */
    static bool isInfinite (double number) noexcept;
    static double lerp (double from, double to, double position) noexcept  { return from + (to - from) * position; }
    /** Rounded half away from zero. */
    static int toNearestInteger (double number) noexcept;
    static int64_t toNearestInteger64 (double number) noexcept;
    /** IEEE binary16 bit patterns, subnormals, infinities and NaN included. */
    static float halfBitsToFloat (uint16_t bits) noexcept;
    static double halfBitsToDouble (uint16_t bits) noexcept;

    //==============================================================================
    double getNumber() const override                { return value; }
    void setNumber (double number) override          { set (number); }
    bool parseNumber (const juce::String& text, juce::String& error, const MemberSignature* signature = nullptr) override;

    /** "+oo" and "-oo" for the family's infinities. */
    juce::String toString() const override;
    /** An integer is taken as a real; the value goes through setNumber. */
    bool load (ObjectImporter& importer) override;

protected:
    /** "+oo", "-oo" and the characters of a decimal real; false for anything else. */
    static bool parseRealText (const juce::String& text, double& result);
};

} // namespace tov
