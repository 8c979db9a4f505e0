#include "AttributedString.h"
#include <juce_graphics/juce_graphics.h>

namespace tov
{

TOV_BEGIN_CLASS (AttributedString)
    TOV_VARIABLE (text)
    TOV_VARIABLE (attributes)
TOV_END_CLASS()

AttributedString::AttributedString (const juce::String& newText) : text (newText)
{
}

void AttributedString::addAttribute (int64_t rangeStart, int64_t rangeEnd, const juce::String& font,
                                     juce::Colour colour, const juce::String& link, bool notify)
{
    auto* attribute = static_cast<TextAttribute*> (TextAttribute::staticClass.createObject (nullptr));
    attribute->set (rangeStart, rangeEnd, font, colour, link, false);
    attributes.append (attribute, notify);
}

juce::AttributedString AttributedString::toJuceAttributedString() const
{
    juce::AttributedString result (getText());
    for (auto* attribute : attributes)
    {
        const juce::Range<int> range ((int) attribute->getRangeStart(), (int) attribute->getRangeEnd());
        if (attribute->getFont().isNotEmpty())
            result.setFont (range, juce::Font::fromString (attribute->getFont()));
        result.setColour (range, attribute->getColour());
    }
    return result;
}

void AttributedString::setFromJuceAttributedString (const juce::AttributedString& source, bool notify)
{
    auto setFromSource = [&source] (AttributedString& target)
    {
        target.text.set (source.getText(), false);
        target.attributes.clear (false);
        for (int i = 0; i < source.getNumAttributes(); ++i)
        {
            const auto& attribute = source.getAttribute (i);
            target.addAttribute (attribute.range.getStart(), attribute.range.getEnd(), attribute.font.toString(),
                                 attribute.colour, {}, false);
        }
    };
    AttributedString converted;
    setFromSource (converted);
    if (converted.equals (*this))
        return;
    setFromSource (*this);
    if (notify)
        changed();
}

} // namespace tov
