#pragma once

#include "Integer.h"

namespace tov
{

/** An integer from 0; with the "oneBased" attribute users see and type it counted from 1. */
class PositiveInteger : public Integer
{
public:
    TOV_DECLARE_CLASS (PositiveInteger, Integer)

    using Integer::Integer;

    /** The "maximum" attribute, -1 by default for no limit; other negative values count as unsigned. */
    double getMaximumValue() const override;
    double getMinimumValue() const override;
    bool parseNumber (const juce::String& text, juce::String& error, const MemberSignature* signature = nullptr) override;
    juce::String toString() const override;

protected:
    bool isOneBased (const MemberSignature* signature = nullptr) const { return getBooleanAttribute ("oneBased", false, signature); }
    /** The greatest value, which a one-based text shows as it is. */
    bool isMaximum (int64_t number) const;
};

} // namespace tov
