#pragma once

#include "String.h"
#include <vector>

namespace tov
{

/** A text chosen from a list of choices that derived classes give. */
class ConfigurableString : public String
{
public:
    TOV_DECLARE_CLASS (ConfigurableString, String)

    using String::String;

    virtual std::vector<juce::String> getChoices() const = 0;

    /** The position of the text among the choices, compared exactly; -1 when absent. */
    int getIndexInChoices() const;
};

} // namespace tov
