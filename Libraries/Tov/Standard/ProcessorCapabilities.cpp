#include "ProcessorCapabilities.h"

namespace tov
{

TOV_BEGIN_CLASS (ProcessorCapabilities)
    TOV_VARIABLE (hasMMX)
    TOV_VARIABLE (has3DNow)
    TOV_VARIABLE (hasSSE)
    TOV_VARIABLE (hasSSE2)
    TOV_VARIABLE (hasSSE3)
    TOV_VARIABLE (hasSSE41)
    TOV_VARIABLE (hasSSE42)
    TOV_VARIABLE (hasAVX)
    TOV_VARIABLE (hasAVX2)
    TOV_VARIABLE (hasAVX512F)
    TOV_VARIABLE (hasAVX512BW)
    TOV_VARIABLE (hasAVX512CD)
    TOV_VARIABLE (hasAVX512DQ)
    TOV_VARIABLE (hasAVX512ER)
    TOV_VARIABLE (hasAVX512IFMA)
    TOV_VARIABLE (hasAVX512PF)
    TOV_VARIABLE (hasAVX512VBMI)
    TOV_VARIABLE (hasAVX512VL)
    TOV_VARIABLE (hasAVX512VPOPCNTDQ)
TOV_END_CLASS()

void ProcessorCapabilities::refreshFromLocalSystem()
{
    using S = juce::SystemStats;
    hasMMX.set (S::hasMMX(), false);             has3DNow.set (S::has3DNow(), false);
    hasSSE.set (S::hasSSE(), false);             hasSSE2.set (S::hasSSE2(), false);
    hasSSE3.set (S::hasSSE3(), false);           hasSSE41.set (S::hasSSE41(), false);
    hasSSE42.set (S::hasSSE42(), false);         hasAVX.set (S::hasAVX(), false);
    hasAVX2.set (S::hasAVX2(), false);           hasAVX512F.set (S::hasAVX512F(), false);
    hasAVX512BW.set (S::hasAVX512BW(), false);   hasAVX512CD.set (S::hasAVX512CD(), false);
    hasAVX512DQ.set (S::hasAVX512DQ(), false);   hasAVX512ER.set (S::hasAVX512ER(), false);
    hasAVX512IFMA.set (S::hasAVX512IFMA(), false); hasAVX512PF.set (S::hasAVX512PF(), false);
    hasAVX512VBMI.set (S::hasAVX512VBMI(), false); hasAVX512VL.set (S::hasAVX512VL(), false);
    hasAVX512VPOPCNTDQ.set (S::hasAVX512VPOPCNTDQ(), false);
}

// The newest feature has no separator after it and every other one has: the texts stay as
// the reports of earlier versions wrote them, so that the reports can be compared.
juce::String ProcessorCapabilities::toString() const
{
    const std::pair<const Boolean*, const char*> features[] = {
        { &hasAVX512VPOPCNTDQ, "AVX512VPOPCNTDQ" }, { &hasAVX512VL, "AVX512VL, " }, { &hasAVX512VBMI, "AVX512VBMI, " },
        { &hasAVX512PF, "AVX512PF, " }, { &hasAVX512IFMA, "AVX512IFMA, " }, { &hasAVX512ER, "AVX512ER, " },
        { &hasAVX512DQ, "AVX512DQ, " }, { &hasAVX512CD, "AVX512CD, " }, { &hasAVX512BW, "AVX512BW, " },
        { &hasAVX512F, "AVX512F, " }, { &hasAVX2, "AVX2, " }, { &hasAVX, "AVX, " }, { &hasSSE42, "SSE4.2, " },
        { &hasSSE41, "SSE4.1, " }, { &hasSSE3, "SSE3, " }, { &hasSSE2, "SSE2, " }, { &hasSSE, "SSE, " },
        { &hasMMX, "MMX, " }, { &has3DNow, "3DNow, " },
    };
    juce::String result;
    for (const auto& [flag, name] : features)
        if (flag->get())
            result += name;
    return result;
}

} // namespace tov
