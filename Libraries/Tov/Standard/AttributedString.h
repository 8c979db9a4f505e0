#pragma once

#include "TextAttribute.h"
#include "../Container/OwnedVector.h"

namespace juce { class AttributedString; }

namespace tov
{

/** A text with fonts, colours and links over ranges of its characters: what a caption or a
    label shows. It wraps juce::AttributedString, which draws it.

    Saved as the text and the list of its attributes:
        {text = "Hello world", attributes = {=> {rangeStart = 0, rangeEnd = 5, font = "Sans; 14.0 Bold",
                                                 colour = "ffff0000", link = ""}}}
*/
class AttributedString : public Object
{
public:
    TOV_DECLARE_CLASS (AttributedString, Object)

    AttributedString() = default;
    explicit AttributedString (const juce::String& text);
    AttributedString (const AttributedString& other) : Object (other)  { other.copyTo (*this); }
    AttributedString& operator= (const AttributedString& other)        { other.copyTo (*this); return *this; }

    const juce::String& getText() const noexcept          { return text.get(); }
    void setText (const juce::String& newText, bool notify = true)  { text.set (newText, notify); }

    size_t getNumAttributes() const noexcept              { return attributes.size(); }
    const TextAttribute& getAttribute (size_t index) const  { return *attributes.get (index); }
    void addAttribute (int64_t rangeStart, int64_t rangeEnd, const juce::String& font, juce::Colour colour,
                       const juce::String& link, bool notify = true);
    void clearAttributes (bool notify = true)             { attributes.clear (notify); }

    /** The text and its ranges as JUCE draws them; links are not JUCE's and stay behind. */
    juce::AttributedString toJuceAttributedString() const;
    void setFromJuceAttributedString (const juce::AttributedString& source, bool notify = true);

    juce::String toString() const override                { return getText(); }

private:
    String text;
    OwnedVector<TextAttribute> attributes;
};

} // namespace tov
