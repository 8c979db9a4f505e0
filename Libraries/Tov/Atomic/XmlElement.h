#pragma once

#include "SourceCode.h"
#include <memory>

namespace tov
{

class ExecutionContext;

/** An XML document kept both as text and as a parsed element, each made from the other on
    demand: loading keeps the text and parses it on first use; setting an element writes
    the text at once. */
class XmlElement : public SourceCode
{
public:
    TOV_DECLARE_CLASS (XmlElement, SourceCode)

    XmlElement() = default;
    XmlElement (const XmlElement& other);
    ~XmlElement() override;

    /** The element, parsed from the text the first time it is asked for; null for an empty or invalid text. */
    juce::XmlElement* get() const;
    /** Stores a copy of the element and writes the text from it; null empties both. */
    void set (const juce::XmlElement* newElement, bool notify = true);
    /** Sets the text and drops the parsed element. */
    void set (const juce::String& text, bool notify = true) override;
    void clearElement (bool notify = true)           { set ((const juce::XmlElement*) nullptr, notify); }
    bool isEmpty() const noexcept                    { return element == nullptr && value.isEmpty(); }
    bool isNotEmpty() const noexcept                 { return ! isEmpty(); }

    const juce::String& getSourceCode() const noexcept  { return value; }
    void setSourceCode (const juce::String& text, bool notify = true)  { set (text, notify); }
    /** Writes the text from the parsed element, as UTF-8 with lines wrapped at 80 characters. */
    void updateSourceCode();
    /** What an enclosing XML document holds for this value: null without a parsed element, a copy of
        it while the text is empty, otherwise a text element holding the source. */
    std::unique_ptr<juce::XmlElement> createElementForSaving() const;

    /** The document's element; parser warnings become information, failures errors naming the source. */
    static std::unique_ptr<juce::XmlElement> parseDocument (ExecutionContext& context, juce::XmlDocument& document, const juce::String& name);
    static std::unique_ptr<juce::XmlElement> parseFile (ExecutionContext& context, const juce::File& file);
    static std::unique_ptr<juce::XmlElement> parseString (ExecutionContext& context, const juce::String& text, const juce::String& name);

    void copyTo (Object& target) const override;
    bool load (ObjectImporter& importer) override;

private:
    mutable std::unique_ptr<juce::XmlElement> element;
};

} // namespace tov
