#pragma once

#include "../Core/Class.h"
#include <map>
#include <vector>

namespace tov
{

/** The metaclass of enumerations: the list of elements, each with a name, an alternative
    name that loading also accepts, a value and descriptions by language code.

    With the class attribute "bitFlags" the values are flags that combine. A class without
    elements stands for a plain number. Elements are declared again each time the class is
    initialised, by declareElements.
*/
class EnumerationClass : public Class
{
public:
    struct Element
    {
        juce::String name;
        juce::String alternativeName;
        int32_t value = 0;
        std::map<juce::String, juce::String> descriptions;
    };

    static constexpr const char* defaultLanguage = "us-en";

    Object* createInstance() const override;
    void declareAttributes (ExecutionContext& context) override;

    void addElement (const juce::String& name, int32_t value, const juce::String& alternativeName = {},
                     const std::map<juce::String, juce::String>& descriptions = {});
    size_t getNumElements() const noexcept           { return elements.size(); }
    const Element& getElement (size_t index) const   { return elements[index]; }

    /** The first element of that value, or -1. */
    int findElement (int32_t value) const;
    /** The first element of that name or alternative name, compared exactly, or -1. */
    int findElement (const juce::String& name) const;
    int findElementByDescription (const juce::String& text, const juce::String& language = defaultLanguage) const;

    const juce::String& getElementName (size_t index) const  { return elements[index].name; }
    juce::String getElementFriendlyName (size_t index) const;
    /** The description in that language, or the element's friendly name. */
    juce::String getElementDescription (size_t index, const juce::String& language = defaultLanguage) const;
    int32_t getElementValue (size_t index) const     { return elements[index].value; }

    bool hasBitFlags() const                         { return getBooleanAttribute ("bitFlags", false); }
    /** All element values ORed together; 0 unless the elements are bit flags. */
    int32_t getFullBitFlagsMask() const;
    bool isValidElementValue (int32_t value) const;

protected:
    /** Adds the elements; runs at every initialisation of the class. */
    virtual void declareElements() {}

private:
    std::vector<Element> elements;
};

/** The metaclass of an enumeration declared in C++: T gives its elements through a static
    declareElements (EnumerationClass&). */
template <class T>
class DeclaredEnumerationClass : public EnumerationClass
{
protected:
    void declareElements() override                  { T::declareElements (*this); }
};

} // namespace tov
