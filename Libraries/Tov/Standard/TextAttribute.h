#pragma once

#include "../Atomic/Integer.h"
#include "../Atomic/String.h"

namespace juce { class Colour; }

namespace tov
{

/** The font, colour and link of a range of characters of an AttributedString, from rangeStart
    up to rangeEnd (excluded). */
class TextAttribute : public Object
{
public:
    TOV_DECLARE_CLASS (TextAttribute, Object)

    int64_t getRangeStart() const noexcept           { return rangeStart.get(); }
    int64_t getRangeEnd() const noexcept             { return rangeEnd.get(); }
    /** The text form of juce::Font ("Sans; 14.0 Bold"); empty for the default font. */
    const juce::String& getFont() const noexcept     { return font.get(); }
    juce::Colour getColour() const;
    const juce::String& getLink() const noexcept     { return link.get(); }

    void set (int64_t start, int64_t end, const juce::String& fontText, juce::Colour colour,
              const juce::String& linkText, bool notify = true);

private:
    Integer rangeStart;
    Integer rangeEnd;
    String font;
    /** 0xAARRGGBB in hexadecimal, as juce::Colour shows it. */
    String colour;
    String link;
};

} // namespace tov
