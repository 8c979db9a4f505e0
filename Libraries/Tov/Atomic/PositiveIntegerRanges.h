#pragma once

#include "PositiveInteger.h"

// Positive integers that differ only in their range, given by class attributes.
namespace tov
{

class StrictlyPositiveInteger : public PositiveInteger { public: TOV_DECLARE_CLASS (StrictlyPositiveInteger, PositiveInteger) using PositiveInteger::PositiveInteger; };
class PositiveInteger7Bits    : public PositiveInteger { public: TOV_DECLARE_CLASS (PositiveInteger7Bits, PositiveInteger) using PositiveInteger::PositiveInteger; };
class PositiveInteger8Bits    : public PositiveInteger { public: TOV_DECLARE_CLASS (PositiveInteger8Bits, PositiveInteger) using PositiveInteger::PositiveInteger; };
class PositiveInteger14Bits   : public PositiveInteger { public: TOV_DECLARE_CLASS (PositiveInteger14Bits, PositiveInteger) using PositiveInteger::PositiveInteger; };

} // namespace tov
