#pragma once

#include "../Atomic/String.h"
#include <vector>

namespace juce { class AttributedString; }

namespace tov
{

/** A text with fonts, colours and links over ranges of its characters: what a caption or a
    label shows. It wraps juce::AttributedString, which draws it.

    The attributes are saved after the text as a list of records:
        {text = "Hello world", attributes = {{rangeStart = 0, rangeEnd = 5, font = "Sans; 14.0 Bold",
                                              colour = "ffff0000", link = ""}}}
*/
class AttributedString : public Object
{
public:
    TOV_DECLARE_CLASS (AttributedString, Object)

    /** One range of characters, from rangeStart up to rangeEnd (excluded). */
    struct Attribute
    {
        int64_t rangeStart = 0;
        int64_t rangeEnd = 0;
        /** The text form of juce::Font ("Sans; 14.0 Bold"); empty for the default font. */
        juce::String font;
        /** 0xAARRGGBB, opaque black by default. */
        uint32_t colour = 0xff000000;
        juce::String link;

        bool operator== (const Attribute& other) const;
        bool operator!= (const Attribute& other) const    { return ! operator== (other); }
    };

    AttributedString() = default;
    explicit AttributedString (const juce::String& text);
    AttributedString (const AttributedString& other);
    AttributedString& operator= (const AttributedString& other)  { other.copyTo (*this); return *this; }

    const juce::String& getText() const noexcept          { return text.get(); }
    void setText (const juce::String& newText, bool notify = true)  { text.set (newText, notify); }

    size_t getNumAttributes() const noexcept              { return attributes.size(); }
    const Attribute& getAttribute (size_t index) const    { return attributes[index]; }
    void addAttribute (const Attribute& attribute, bool notify = true);
    void clearAttributes (bool notify = true);

    /** The text and its ranges as JUCE draws them; links are not JUCE's and stay behind. */
    juce::AttributedString toJuceAttributedString() const;
    void setFromJuceAttributedString (const juce::AttributedString& source, bool notify = true);

    juce::String toString() const override                { return getText(); }
    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    void save (ObjectExporter& exporter) const override;
    /** A state without attributes leaves none. */
    bool load (ObjectImporter& importer) override;
    bool loadVariable (ObjectImporter& importer, juce::StringRef name) override;

private:
    String text;
    std::vector<Attribute> attributes;

    static void saveAttribute (ObjectExporter& exporter, const Attribute& attribute);
    static bool loadAttribute (ObjectImporter& importer, Attribute& attribute);
};

} // namespace tov
