#pragma once

#include "Number.h"
#include "../Core/ValueObject.h"

namespace tov
{

/** A signed 64-bit integer, saved as an integer State. */
class Integer : public ValueObject<int64_t, Number>
{
public:
    TOV_DECLARE_CLASS (Integer, Number)

    static constexpr int64_t minimumValue = std::numeric_limits<int64_t>::min();
    static constexpr int64_t maximumValue = std::numeric_limits<int64_t>::max();

    explicit Integer (int64_t value = 0) : ValueObject (value) {}

    void reset (bool notify = true)                  { set (0, notify); }
    void increment (int64_t amount = 1, bool notify = true)  { set (value + amount, notify); }
    void decrement (int64_t amount = 1, bool notify = true)  { set (value - amount, notify); }

    //==============================================================================
    double getNumber() const override                { return (double) value; }
    /** Rounds half away from zero and sets with notification. */
    void setNumber (double number) override;
    double getMinimumValue() const override;
    double getMaximumValue() const override;
    double getMinimalStep() const override           { return 1.0; }
    double getSmallStep() const override             { return 1.0; }
    double getMarkerStep (double scale, double& ratio) const override;
    double makeNumberValid (double number) const override;
    bool parseNumber (const juce::String& text, juce::String& error, const MemberSignature* signature = nullptr) override;

    /** A real is truncated; "+oo" gives the largest integer. */
    bool load (ObjectImporter& importer) override;

protected:
    /** Decimal digits with signs, "+oo" and "-oo"; a fraction is cut off with a note in error. */
    static bool parseIntegerText (juce::String text, int64_t& result, juce::String& error, const juce::String& className);
    /** A signed attribute whose default stands for the infinity on that side. */
    double getLimitAttribute (juce::StringRef name, int64_t unlimited, double infinity) const;
};

} // namespace tov
