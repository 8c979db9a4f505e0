#include "GammaCorrection.h"

namespace tov
{

TOV_BEGIN_CLASS (GammaCorrection)
    TOV_VARIABLE (red, { "default", "2.2" })
    TOV_VARIABLE (green, { "default", "2.2" })
    TOV_VARIABLE (blue, { "default", "2.2" })
    TOV_VARIABLE (uniform, { "default", "true" })
TOV_END_CLASS()

GammaCorrection::GammaCorrection() : red (defaultGamma), green (defaultGamma), blue (defaultGamma), uniform (true)
{
}

GammaCorrection::GammaCorrection (const GammaCorrection& other)
    : Object (other), red (other.red), green (other.green), blue (other.blue), uniform (other.uniform)
{
}

// Loading and copying set the channels one by one under the constraints mark, and what they
// bring is kept as it is; the mark also keeps the channels written here from coming back.
void GammaCorrection::variableChangedCallback (Object* variable, Object* changedObject)
{
    if (! uniform.get() || isApplyingVariableConstraints())
        return;

    startApplyingVariableConstraints();
    applyUniformity (variable);
    finishApplyingVariableConstraints();
}

void GammaCorrection::applyUniformity (Object* variable)
{
    if (variable == &uniform)
    {
        const double mean = (red.get() + green.get() + blue.get()) / 3.0;
        red.set (mean);
        green.set (mean);
        blue.set (mean);
    }
    else if (auto* channel = dynamic_cast<PositiveReal*> (variable))
    {
        const double value = channel->get();
        for (auto* other : { &red, &green, &blue })
            if (other != channel)
                other->set (value);
    }
}

} // namespace tov
