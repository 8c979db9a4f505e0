#include "String.h"
#include "../Core/ObjectExporter.h"
#include "../Core/ObjectImporter.h"

namespace tov
{

TOV_BEGIN_CLASS (String, { "friendlyName", "\"Text\"" })
TOV_END_CLASS()

void String::set (const juce::String& newValue, bool notify)
{
    if (newValue == value)
        return;
    value = newValue;
    if (notify)
        changed();
}

bool String::equalsSameClass (const Object& other) const
{
    return value == static_cast<const String&> (other).value;
}

void String::copyTo (Object& target) const
{
    copyClassTo (target);
    if (auto* text = dynamic_cast<String*> (&target))
        text->value = value;
}

void String::convertFrom (const Object& source)
{
    set (source.toString());
}

void String::save (ObjectExporter& exporter) const
{
    exporter.writeString (value);
}

bool String::load (ObjectImporter& importer)
{
    juce::String newValue;
    if (! importer.readString (newValue))
        return false;
    set (newValue);
    return true;
}

} // namespace tov
