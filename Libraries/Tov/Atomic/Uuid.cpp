#include "Uuid.h"

namespace tov
{

TOV_BEGIN_CLASS (Uuid, { "friendlyName", "\"Universal Unique Identifier\"" })
TOV_END_CLASS()

bool Uuid::isValidUuidDashedString (const juce::String& text)
{
    if (text.length() != 36)
        return false;
    int index = 0;
    for (auto p = text.getCharPointer(); ! p.isEmpty(); ++index)
    {
        const juce::juce_wchar c = p.getAndAdvance();
        const bool isDashPosition = index == 8 || index == 13 || index == 18 || index == 23;
        if (isDashPosition ? c != '-' : juce::CharacterFunctions::getHexDigitValue (c) < 0)
            return false;
    }
    return true;
}

void Uuid::save (ObjectExporter& exporter) const
{
    exporter.writeString (toString());
}

bool Uuid::load (ObjectImporter& importer)
{
    juce::String text;
    if (! importer.readString (text) || ! isValidUuidDashedString (text))
        return false;
    set (juce::Uuid (text));
    return true;
}

juce::var Uuid::saveToJson (uint32_t) const
{
    return toString();
}

bool Uuid::loadFromJson (ExecutionContext&, const juce::var& json)
{
    set (juce::Uuid (json.toString()));
    return true;
}

} // namespace tov
