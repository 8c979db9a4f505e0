#include "IntegerBound.h"
#include "../Core/ObjectExporter.h"
#include "../Core/ObjectImporter.h"

namespace tov
{

bool IntegerBound::isBelow (int64_t value, int64_t bound, bool isUnsigned)
{
    return isUnsigned ? (uint64_t) value < (uint64_t) bound : value < bound;
}

int64_t IntegerBound::limit (int64_t value, int64_t bound, bool isUnsigned)
{
    return bound != 0 && ! isBelow (value, bound, isUnsigned) ? bound - 1 : value;
}

bool IntegerBound::isValid (int64_t value, int64_t bound, bool isUnsigned)
{
    return (value == 0 && bound == 0) || isBelow (value, bound, isUnsigned);
}

juce::String IntegerBound::toString (int64_t value, int64_t bound, const juce::String& unit)
{
    juce::String text = juce::String (value) + " / " + juce::String (bound);
    return unit.isNotEmpty() ? text + " " + unit : text;
}

bool IntegerBound::parse (const juce::String& text, int64_t& value, int64_t& bound, juce::String& error)
{
    juce::StringArray tokens;
    tokens.addTokens (text, " ", {});
    tokens.removeEmptyStrings();
    tokens.removeString ("/");
    if (tokens.size() < 2)
    {
        error = "Not enough tokens";
        return false;
    }
    value = tokens[0].getLargeIntValue();
    bound = tokens[1].getLargeIntValue();
    return true;
}

void IntegerBound::save (ObjectExporter& exporter, int64_t value, int64_t bound)
{
    exporter.saveVariable ("value", value);
    exporter.saveVariable ("bound", bound);
}

bool IntegerBound::load (ObjectImporter& importer, int64_t& value, int64_t& bound, bool isUnsigned, const juce::String& context)
{
    if (! importer.checkType (StateType::variablesType))
        return false;

    int64_t newValue = 0, newBound = 0;
    bool result = true;
    for (size_t i = 0; i < importer.getNumVariables(); ++i)
    {
        const juce::String name = importer.getVariableName (i);
        ObjectImporter::Scope scope (importer, i);
        if (name == "value")
            result = importer.readInteger (newValue) && result;
        else if (name == "bound")
            result = importer.readInteger (newBound) && result;
        else
            importer.sendUnknownVariableWarning (context, name);
    }
    if (! result)
        return false;

    if (! isValid (newValue, newBound, isUnsigned))
    {
        importer.sendError (context, "value is too large");
        return false;
    }
    value = newValue;
    bound = newBound;
    return true;
}

} // namespace tov
