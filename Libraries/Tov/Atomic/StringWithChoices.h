#pragma once

#include "ConfigurableString.h"

namespace tov
{

/** A text with a list of choices of its own. The list is saved only where the object has an
    identity of its own; elsewhere the class or the owner is expected to supply it. */
class StringWithChoices : public ConfigurableString
{
public:
    TOV_DECLARE_CLASS (StringWithChoices, ConfigurableString)

    using ConfigurableString::ConfigurableString;

    std::vector<juce::String> getChoices() const override  { return choices; }
    /** The first choice equal to the text, or -1. */
    int findChoiceIndex (const juce::String& text) const;
    void setChoices (const std::vector<juce::String>& newChoices, bool notify = true);
    void setChoices (const juce::StringArray& newChoices, bool notify = true);

    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    /** Another StringWithChoices gives its current text. */
    void convertFrom (const Object& source) override;
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;

private:
    std::vector<juce::String> choices;

    bool isSavedWithChoices (const ObjectExporter& exporter) const;
    static bool readChoices (ObjectImporter& importer, std::vector<juce::String>& result);
};

} // namespace tov
