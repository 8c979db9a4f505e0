#pragma once

#include "../Atomic/Enumeration.h"

namespace tov
{

/** Where a text or an image sits in its box: the flags of juce::Justification with the same
    values, so that juce::Justification (value.get()) is the same placement. */
class Justification : public Enumeration
{
public:
    TOV_DECLARE_CLASS (Justification, Enumeration)
    TOV_ELEMENTS ((left, 1),
                  (right, 2),
                  (horizontallyCentred, 4),
                  (top, 8),
                  (bottom, 16),
                  (verticallyCentred, 32),
                  (horizontallyJustified, 64))
};

} // namespace tov
