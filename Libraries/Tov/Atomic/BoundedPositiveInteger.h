#pragma once

#include "PositiveInteger.h"

namespace tov
{

/** A positive integer that stays below a bound of its own, as an index below a count; a bound
    of 0 means none. Value and bound compare as unsigned numbers. */
class BoundedPositiveInteger : public PositiveInteger
{
public:
    TOV_DECLARE_CLASS (BoundedPositiveInteger, PositiveInteger)

    explicit BoundedPositiveInteger (int64_t value = 0, int64_t bound = 0) : PositiveInteger (value), bound (bound) {}

    int64_t getBound() const noexcept                { return bound; }
    /** The value is limited to bound - 1 when there is a bound. */
    void set (int64_t newValue, bool notify = true) override;
    void setValueAndBound (int64_t newValue, int64_t newBound, bool notify = true);
    void setBound (int64_t newBound, bool notify = true)  { setValueAndBound (value, newBound, notify); }

    /** bound - 1, or no limit without a bound. */
    double getMaximumValue() const override;
    juce::String toString() const override;
    bool parseNumber (const juce::String& text, juce::String& error, const MemberSignature* signature = nullptr) override;

    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;

private:
    int64_t bound = 0;
};

} // namespace tov
