#include "EnumerationClass.h"
#include "Enumeration.h"

namespace tov
{

Class* EnumerationClass::declareBaseClass()
{
    return &Object::getStaticClass();
}

Object* EnumerationClass::createInstance() const
{
    return new Enumeration();
}

void EnumerationClass::declareAttributes (ExecutionContext& context)
{
    Class::declareAttributes (context);
    elements.clear();
    declareElements();
}

void EnumerationClass::addElement (const juce::String& name, int32_t value, std::initializer_list<ElementAttribute> attributes)
{
    Element element { name, {}, value, {} };
    for (auto& attribute : attributes)
    {
        if (attribute.language == nullptr)
            element.alternativeName = attribute.text;
        else
            element.descriptions[attribute.language] = attribute.text;
    }
    elements.push_back (std::move (element));
}

int EnumerationClass::findElement (int32_t value) const
{
    for (size_t i = 0; i < elements.size(); ++i)
        if (elements[i].value == value)
            return (int) i;
    return -1;
}

int EnumerationClass::findElement (const juce::String& name) const
{
    for (size_t i = 0; i < elements.size(); ++i)
        if (elements[i].name == name || (elements[i].alternativeName.isNotEmpty() && elements[i].alternativeName == name))
            return (int) i;
    return -1;
}

int EnumerationClass::findElementByDescription (const juce::String& text, const juce::String& language) const
{
    for (size_t i = 0; i < elements.size(); ++i)
        if (getElementDescription (i, language) == text)
            return (int) i;
    return -1;
}

juce::String EnumerationClass::getElementFriendlyName (size_t index) const
{
    return MemberSignature::makeFriendlyNameFromName (elements[index].name, true);
}

juce::String EnumerationClass::getElementDescription (size_t index, const juce::String& language) const
{
    const auto& descriptions = elements[index].descriptions;
    const auto found = descriptions.find (language);
    return found != descriptions.end() ? found->second : getElementFriendlyName (index);
}

int32_t EnumerationClass::getFullBitFlagsMask() const
{
    if (! hasBitFlags())
        return 0;
    int32_t mask = 0;
    for (auto& element : elements)
        mask |= element.value;
    return mask;
}

bool EnumerationClass::isValidElementValue (int32_t value) const
{
    if (elements.empty())
        return true;
    if (hasBitFlags())
        return (value & ~getFullBitFlagsMask()) == 0;
    return findElement (value) >= 0;
}

} // namespace tov
