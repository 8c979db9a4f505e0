#pragma once

#include "../Atomic/Boolean.h"

namespace tov
{

/** The instruction set extensions of a machine's processors. */
class ProcessorCapabilities : public Object
{
public:
    TOV_DECLARE_CLASS (ProcessorCapabilities, Object)

    Boolean hasMMX, has3DNow, hasSSE, hasSSE2, hasSSE3, hasSSE41, hasSSE42, hasAVX, hasAVX2;
    Boolean hasAVX512F, hasAVX512BW, hasAVX512CD, hasAVX512DQ, hasAVX512ER, hasAVX512IFMA;
    Boolean hasAVX512PF, hasAVX512VBMI, hasAVX512VL, hasAVX512VPOPCNTDQ;

    /** This machine's, from juce::SystemStats. */
    void refreshFromLocalSystem();

    /** The set features, newest first, each as older reports wrote it. */
    juce::String toString() const override;
};

} // namespace tov
