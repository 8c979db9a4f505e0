#include "AttributedString.h"
#include <juce_graphics/juce_graphics.h>

namespace tov
{

TOV_BEGIN_CLASS (AttributedString)
    TOV_VARIABLE (text)
TOV_END_CLASS()

bool AttributedString::Attribute::operator== (const Attribute& other) const
{
    return rangeStart == other.rangeStart && rangeEnd == other.rangeEnd && font == other.font
        && colour == other.colour && link == other.link;
}

AttributedString::AttributedString (const juce::String& newText) : text (newText)
{
}

AttributedString::AttributedString (const AttributedString& other) : Object (other), text (other.text), attributes (other.attributes)
{
}

void AttributedString::addAttribute (const Attribute& attribute, bool notify)
{
    attributes.push_back (attribute);
    if (notify)
        changed();
}

void AttributedString::clearAttributes (bool notify)
{
    if (attributes.empty())
        return;
    attributes.clear();
    if (notify)
        changed();
}

juce::AttributedString AttributedString::toJuceAttributedString() const
{
    juce::AttributedString result (getText());
    for (const auto& attribute : attributes)
    {
        const juce::Range<int> range ((int) attribute.rangeStart, (int) attribute.rangeEnd);
        if (attribute.font.isNotEmpty())
            result.setFont (range, juce::Font::fromString (attribute.font));
        result.setColour (range, juce::Colour (attribute.colour));
    }
    return result;
}

void AttributedString::setFromJuceAttributedString (const juce::AttributedString& source, bool notify)
{
    text.set (source.getText(), notify);
    std::vector<Attribute> newAttributes;
    for (int i = 0; i < source.getNumAttributes(); ++i)
    {
        const auto& attribute = source.getAttribute (i);
        newAttributes.push_back ({ attribute.range.getStart(), attribute.range.getEnd(),
                                   attribute.font.toString(), attribute.colour.getARGB(), {} });
    }
    if (newAttributes == attributes)
        return;
    attributes = std::move (newAttributes);
    if (notify)
        changed();
}

bool AttributedString::equalsSameClass (const Object& other) const
{
    return Object::equalsSameClass (other) && attributes == static_cast<const AttributedString&> (other).attributes;
}

void AttributedString::copyTo (Object& target) const
{
    Object::copyTo (target);
    if (auto* copy = dynamic_cast<AttributedString*> (&target); copy != nullptr && copy != this)
        copy->attributes = attributes;
}

//==============================================================================
void AttributedString::save (ObjectExporter& exporter) const
{
    Object::save (exporter);
    if (attributes.empty())
        return;

    ObjectExporter::Scope list (exporter, "attributes");
    for (const auto& attribute : attributes)
    {
        ObjectExporter::Scope record (exporter, {});
        saveAttribute (exporter, attribute);
    }
}

void AttributedString::saveAttribute (ObjectExporter& exporter, const Attribute& attribute)
{
    exporter.saveVariable ("rangeStart", attribute.rangeStart);
    exporter.saveVariable ("rangeEnd", attribute.rangeEnd);
    exporter.saveVariable ("font", attribute.font);
    exporter.saveVariable ("colour", juce::Colour (attribute.colour).toString());
    exporter.saveVariable ("link", attribute.link);
}

bool AttributedString::load (ObjectImporter& importer)
{
    attributes.clear();
    return Object::load (importer);
}

bool AttributedString::loadVariable (ObjectImporter& importer, juce::StringRef name)
{
    if (name != juce::StringRef ("attributes"))
        return Object::loadVariable (importer, name);

    attributes.clear();
    if (importer.getCurrentType() == StateType::voidType)
        return true;
    if (! importer.checkType (StateType::variablesType))
        return false;

    bool result = true;
    for (size_t i = 0; i < importer.getNumVariables(); ++i)
    {
        ObjectImporter::Scope record (importer, i);
        Attribute attribute;
        result = loadAttribute (importer, attribute) && result;
        attributes.push_back (attribute);
    }
    changed();
    return result;
}

// Each field is optional: what a record leaves out keeps its default.
bool AttributedString::loadAttribute (ObjectImporter& importer, Attribute& attribute)
{
    bool result = true;
    auto readField = [&] (const char* name, auto&& read)
    {
        ObjectImporter::Scope field (importer, name);
        if (field.isOpen())
            result = read() && result;
    };
    juce::String colourText;
    readField ("rangeStart", [&] { return importer.readInteger (attribute.rangeStart); });
    readField ("rangeEnd", [&] { return importer.readInteger (attribute.rangeEnd); });
    readField ("font", [&] { return importer.readString (attribute.font); });
    readField ("colour", [&] { return importer.readString (colourText); });
    readField ("link", [&] { return importer.readString (attribute.link); });
    if (colourText.isNotEmpty())
        attribute.colour = juce::Colour::fromString (colourText).getARGB();
    return result;
}

} // namespace tov
