#pragma once

#include "../Atomic/ConfigurableString.h"

namespace tov
{

/** The ip of a local adapter to bind, offered as a choice among the machine's addresses. */
class LocalIp : public ConfigurableString
{
public:
    TOV_DECLARE_CLASS (LocalIp, ConfigurableString)

    using ConfigurableString::ConfigurableString;

    /** Any, localhost, then every address of every adapter, connected or not, of the network
        stats above this object, or of this machine now when nothing above holds any. */
    std::vector<juce::String> getChoices() const override;

    /** What an editor shows beside a choice: "(Any Interface)", "(Local Host)" or the adapter's
        name in parentheses, led by "<dhcp> " and "<disconnected> " as they apply; empty for an
        ip that no adapter holds. */
    juce::String getChoiceAnnotation (const juce::String& ip) const;
};

} // namespace tov
