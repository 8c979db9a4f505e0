#pragma once

#include "Number.h"

namespace tov
{

/** A double, saved as a real State; "+oo" stands for the largest finite double. */
class Real : public Number
{
public:
    TOV_DECLARE_CLASS (Real, Number)

    explicit Real (double value = 0.0) : value (value) {}

    double get() const noexcept                      { return value; }
    /** Stores and, with notify, calls changed(); nothing happens when the value is the same. */
    virtual void set (double newValue, bool notify = true);
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

    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    juce::String toString() const override;
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;

protected:
    /** "+oo", "-oo" and the characters of a decimal real; false for anything else. */
    static bool parseRealText (const juce::String& text, double& result);

    double value = 0.0;
};

} // namespace tov
