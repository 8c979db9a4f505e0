#pragma once

#include "BoundedInteger.h"
#include "MemorySize.h"

namespace tov
{

/** A memory size that stays below a bound of its own, as a used part of a capacity; a bound of
    0 means none. Value and bound compare as signed numbers. */
class BoundedMemorySize : public BoundedInteger<MemorySize, false>
{
public:
    TOV_DECLARE_CLASS (BoundedMemorySize, MemorySize)

    using BoundedInteger::BoundedInteger;

    /** "value / bound", followed by the unit when the size has one. */
    juce::String toString() const override;
};

} // namespace tov
