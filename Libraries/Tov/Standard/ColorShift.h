#pragma once

#include "../Atomic/PositiveReal.h"
#include "../Atomic/SignedPercentage.h"

namespace tov
{

/** A colour balance: three shifts between opposite colours and an overall multiplier. */
class ColorShift : public Object
{
public:
    TOV_DECLARE_CLASS (ColorShift, Object)

    ColorShift();
    ColorShift (const ColorShift& other);
    ColorShift& operator= (const ColorShift& other)       { other.copyTo (*this); return *this; }

    double getCyanRed() const noexcept                    { return cyanRed.get(); }
    double getMagentaGreen() const noexcept               { return magentaGreen.get(); }
    double getYellowBlue() const noexcept                 { return yellowBlue.get(); }
    double getMultiplier() const noexcept                 { return multiplier.get(); }
    void set (double newCyanRed, double newMagentaGreen, double newYellowBlue, double newMultiplier, bool notify = true);

    /** Older documents carry a variable "linked", which no longer means anything. */
    bool loadVariable (ObjectImporter& importer, juce::StringRef name) override;

private:
    SignedPercentage cyanRed;
    SignedPercentage magentaGreen;
    SignedPercentage yellowBlue;
    PositiveReal multiplier;
};

} // namespace tov
