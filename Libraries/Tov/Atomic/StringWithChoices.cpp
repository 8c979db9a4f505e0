#include "StringWithChoices.h"
#include "../Core/ObjectExporter.h"
#include "../Core/ObjectImporter.h"
#include <algorithm>

namespace tov
{

TOV_BEGIN_CLASS (StringWithChoices, { "friendlyName", "\"Multiple-choices option\"" })
TOV_END_CLASS()

int StringWithChoices::findChoiceIndex (const juce::String& text) const
{
    const auto found = std::find (choices.begin(), choices.end(), text);
    return found != choices.end() ? (int) (found - choices.begin()) : -1;
}

void StringWithChoices::setChoices (const std::vector<juce::String>& newChoices, bool notify)
{
    if (newChoices == choices)
        return;
    choices = newChoices;
    if (notify)
        changed();
}

void StringWithChoices::setChoices (const juce::StringArray& newChoices, bool notify)
{
    setChoices (std::vector<juce::String> (newChoices.begin(), newChoices.end()), notify);
}

bool StringWithChoices::equalsSameClass (const Object& other) const
{
    auto& otherString = static_cast<const StringWithChoices&> (other);
    return value == otherString.value && choices == otherString.choices;
}

void StringWithChoices::copyTo (Object& target) const
{
    ConfigurableString::copyTo (target);
    if (auto* text = dynamic_cast<StringWithChoices*> (&target))
        text->choices = choices;
}

void StringWithChoices::convertFrom (const Object& source)
{
    if (auto* text = dynamic_cast<const StringWithChoices*> (&source))
        set (text->get());
    else
        ConfigurableString::convertFrom (source);
}

//==============================================================================
bool StringWithChoices::isSavedWithChoices (const ObjectExporter& exporter) const
{
    if (choices.empty())
        return false;
    const bool hasOwnIdentity = getUniqueIdentifier().isNotNull() && ! exporter.hasFlag (exportWithoutIdentifiers);
    return hasOwnIdentity || exporter.hasFlag (exportTransientVariables);
}

void StringWithChoices::save (ObjectExporter& exporter) const
{
    if (! isSavedWithChoices (exporter))
    {
        exporter.writeString (value);
        return;
    }
    exporter.saveVariable ("value", value);
    ObjectExporter::Scope scope (exporter, "choices");
    exporter.reserveVariables (choices.size());
    for (auto& choice : choices)
        exporter.saveVariable (juce::String(), choice);
}

bool StringWithChoices::readChoices (ObjectImporter& importer, std::vector<juce::String>& result)
{
    result.clear();
    bool ok = true;
    for (size_t i = 0; i < importer.getNumVariables(); ++i)
    {
        ObjectImporter::Scope scope (importer, i);
        juce::String choice;
        ok = importer.readString (choice) && ok;
        result.push_back (choice);
    }
    return ok;
}

bool StringWithChoices::load (ObjectImporter& importer)
{
    juce::String newValue = value;
    std::vector<juce::String> newChoices = choices;
    bool ok = true;

    if (importer.getCurrentType() == StateType::variablesType)
    {
        for (size_t i = 0; i < importer.getNumVariables(); ++i)
        {
            const juce::String name = importer.getVariableName (i);
            ObjectImporter::Scope scope (importer, i);
            if (name == "value")
                ok = importer.readString (newValue) && ok;
            else if (name == "choices")
                ok = readChoices (importer, newChoices) && ok;
            else
                importer.sendUnknownVariableWarning ("StringWithChoices", name);
        }
    }
    else if (! importer.readString (newValue))
    {
        return false;
    }

    if (newValue != value || newChoices != choices)
    {
        value = newValue;
        choices = newChoices;
        changed();
    }
    return ok;
}

} // namespace tov
