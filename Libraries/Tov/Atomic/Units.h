#pragma once

#include "Meters.h"
#include "PositiveReal.h"

// Reals that differ from their base only in unit, range and friendly name, all given by class attributes.
namespace tov
{

class PositiveMeters          : public Meters       { public: TOV_DECLARE_CLASS (PositiveMeters, Meters) using Meters::Meters; };
class Millimeters             : public Real         { public: TOV_DECLARE_CLASS (Millimeters, Real) using Real::Real; };
class PositiveMillimeters     : public Millimeters  { public: TOV_DECLARE_CLASS (PositiveMillimeters, Millimeters) using Millimeters::Millimeters; };
class Pixels                  : public Real         { public: TOV_DECLARE_CLASS (Pixels, Real) using Real::Real; };
class PositivePixels          : public Pixels       { public: TOV_DECLARE_CLASS (PositivePixels, Pixels) using Pixels::Pixels; };
class StrictlyPositivePixels  : public PositivePixels { public: TOV_DECLARE_CLASS (StrictlyPositivePixels, PositivePixels) using PositivePixels::PositivePixels; };
class Milliseconds            : public PositiveReal { public: TOV_DECLARE_CLASS (Milliseconds, PositiveReal) using PositiveReal::PositiveReal; };
class SignedMilliseconds      : public Real         { public: TOV_DECLARE_CLASS (SignedMilliseconds, Real) using Real::Real; };
class Brightness              : public PositiveReal { public: TOV_DECLARE_CLASS (Brightness, PositiveReal) using PositiveReal::PositiveReal; };
class Frequency               : public PositiveReal { public: TOV_DECLARE_CLASS (Frequency, PositiveReal) using PositiveReal::PositiveReal; };
class Illuminance             : public PositiveReal { public: TOV_DECLARE_CLASS (Illuminance, PositiveReal) using PositiveReal::PositiveReal; };
class LuminousPower           : public PositiveReal { public: TOV_DECLARE_CLASS (LuminousPower, PositiveReal) using PositiveReal::PositiveReal; };

} // namespace tov
