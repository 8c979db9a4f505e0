#pragma once

#include "Real.h"

namespace tov
{

/** A ratio shown as a percentage: 0.5 is "50.000". Its range, 0 to 100%, only suggests where
    sliders go: any value is valid. */
class UnboundedPercentage : public Real
{
public:
    TOV_DECLARE_CLASS (UnboundedPercentage, Real)

    using Real::Real;

    bool isBounded() const override;
    double makeNumberValid (double number) const override;
    double getSmallStep() const override             { return 0.001; }
    juce::String toString() const override;
    /** "50%", "50 %" and "50" all give 0.5. */
    bool parseNumber (const juce::String& text, juce::String& error, const MemberSignature* signature = nullptr) override;

protected:
    /** Whether the declared range also limits the value. */
    virtual bool keepsToItsRange() const             { return false; }
};

} // namespace tov
