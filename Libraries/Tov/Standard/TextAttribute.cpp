#include "TextAttribute.h"
#include <juce_graphics/juce_graphics.h>

namespace tov
{

TOV_BEGIN_CLASS (TextAttribute)
    TOV_VARIABLE (rangeStart)
    TOV_VARIABLE (rangeEnd)
    TOV_VARIABLE (font)
    TOV_VARIABLE (colour, { "default", "\"ff000000\"" })
    TOV_VARIABLE (link)
TOV_END_CLASS()

juce::Colour TextAttribute::getColour() const
{
    return juce::Colour::fromString (colour.get());
}

void TextAttribute::set (int64_t start, int64_t end, const juce::String& fontText, juce::Colour newColour,
                         const juce::String& linkText, bool notify)
{
    rangeStart.set (start, notify);
    rangeEnd.set (end, notify);
    font.set (fontText, notify);
    colour.set (newColour.toString(), notify);
    link.set (linkText, notify);
}

} // namespace tov
