#include "XmlElement.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

TOV_BEGIN_CLASS (XmlElement)
TOV_END_CLASS()

static std::unique_ptr<juce::XmlElement> copyOf (const juce::XmlElement* element)
{
    return element != nullptr ? std::make_unique<juce::XmlElement> (*element) : nullptr;
}

XmlElement::XmlElement (const XmlElement& other)
    : SourceCode (other), element (copyOf (other.element.get()))
{
}

XmlElement::~XmlElement() = default;

juce::XmlElement* XmlElement::get() const
{
    if (element == nullptr && value.isNotEmpty())
    {
        ExecutionContext context;
        element = parseString (context, value, getFriendlyName());
    }
    return element.get();
}

void XmlElement::set (const juce::XmlElement* newElement, bool notify)
{
    element = copyOf (newElement);
    updateSourceCode();
    if (notify)
        changed();
}

void XmlElement::set (const juce::String& text, bool notify)
{
    if (text == value)
        return;
    element.reset();
    SourceCode::set (text, notify);
}

void XmlElement::updateSourceCode()
{
    if (element == nullptr)
    {
        value.clear();
        return;
    }
    juce::XmlElement::TextFormat format;
    format.customEncoding = "utf-8";
    format.lineWrapLength = 80;
    value = element->toString (format);
}

std::unique_ptr<juce::XmlElement> XmlElement::createElementForSaving() const
{
    if (element == nullptr)
        return nullptr;
    if (value.isEmpty())
        return copyOf (element.get());
    // Long sources stand on lines of their own inside the enclosing document.
    const juce::String lineFeed = value.length() >= 30 ? "\n" : "";
    return std::unique_ptr<juce::XmlElement> (juce::XmlElement::createTextElement (lineFeed + value + lineFeed));
}

//==============================================================================
std::unique_ptr<juce::XmlElement> XmlElement::parseDocument (ExecutionContext& context, juce::XmlDocument& document, const juce::String& name)
{
    auto result = document.getDocumentElement();
    const juce::String parserText = document.getLastParseError();
    if (result != nullptr)
    {
        if (parserText.isNotEmpty())
            context.information (parserText);
    }
    else if (parserText.isNotEmpty())
        context.error ("Could not parse " + name + ": " + parserText);
    else
        context.error ("Could not open " + name);
    return result;
}

std::unique_ptr<juce::XmlElement> XmlElement::parseFile (ExecutionContext& context, const juce::File& file)
{
    juce::XmlDocument document (file);
    return parseDocument (context, document, file.getFullPathName());
}

std::unique_ptr<juce::XmlElement> XmlElement::parseString (ExecutionContext& context, const juce::String& text, const juce::String& name)
{
    juce::XmlDocument document (text);
    return parseDocument (context, document, name);
}

//==============================================================================
void XmlElement::copyTo (Object& target) const
{
    SourceCode::copyTo (target);
    if (auto* xml = dynamic_cast<XmlElement*> (&target))
        xml->element = copyOf (element.get());
}

bool XmlElement::load (ObjectImporter& importer)
{
    element.reset();
    return SourceCode::load (importer);
}

} // namespace tov
