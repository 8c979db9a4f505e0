#pragma once

#include "../Atomic/Boolean.h"
#include "../Atomic/PositiveReal.h"

namespace tov
{

/** A gamma per colour channel, 2.2 by default, which can be held uniform.

    While uniform is set, the three channels stay equal: editing one edits all three, and
    setting uniform gives all three the mean of their values.
*/
class GammaCorrection : public Object
{
public:
    TOV_DECLARE_CLASS (GammaCorrection, Object)

    static constexpr double defaultGamma = 2.2;

    GammaCorrection();
    GammaCorrection (const GammaCorrection& other);
    GammaCorrection& operator= (const GammaCorrection& other)  { other.copyTo (*this); return *this; }

    double getRed() const noexcept                        { return red.get(); }
    double getGreen() const noexcept                      { return green.get(); }
    double getBlue() const noexcept                       { return blue.get(); }
    bool isUniform() const noexcept                       { return uniform.get(); }
    PositiveReal& getRedVariable() noexcept               { return red; }
    PositiveReal& getGreenVariable() noexcept             { return green; }
    PositiveReal& getBlueVariable() noexcept              { return blue; }
    void setUniform (bool shouldBeUniform, bool notify = true)  { uniform.set (shouldBeUniform, notify); }

    bool hasVariableConstraints() const override          { return true; }
    void variableChangedCallback (Object* variable, Object* changedObject) override;

private:
    PositiveReal red;
    PositiveReal green;
    PositiveReal blue;
    Boolean uniform;

    void applyUniformity (Object* variable);
};

} // namespace tov
