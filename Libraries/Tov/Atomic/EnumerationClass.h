#pragma once

#include "../Core/Class.h"
#include <initializer_list>
#include <map>
#include <vector>

namespace tov
{

/** The metaclass of enumerations: the list of elements, each with a name, an alternative
    name that loading also accepts, a value and descriptions by language code.

    With the class attribute "bitFlags" the values are flags that combine. A class without
    elements stands for a plain number: this class itself is the metaclass of the bare
    Enumeration. Elements are declared again each time the class is initialised, by
    declareElements.
*/
class EnumerationClass : public Class
{
public:
    /** What a declaration may write beside an element's name and value: an alternative name
        (no language) or the description in one language. */
    struct ElementAttribute
    {
        const char* language;
        const char* text;
    };

    struct Element
    {
        juce::String name;
        juce::String alternativeName;
        int32_t value = 0;
        std::map<juce::String, juce::String> descriptions;
    };

    static constexpr const char* defaultLanguage = "us-en";

    EnumerationClass() = default;
    /** The class of the bare Enumeration, as its declaration names it. */
    explicit EnumerationClass (const char* name)     { setDeclaredName (name); }

    Class* declareBaseClass() override;
    Object* createInstance() const override;
    void declareAttributes (ExecutionContext& context) override;

    void addElement (const juce::String& name, int32_t value, std::initializer_list<ElementAttribute> attributes = {});
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

/** True when T lists elements of its own or inherits them from an enumeration that does. */
template <class T, class = void>
struct HasDeclaredElements : std::false_type {};

template <class T>
struct HasDeclaredElements<T, std::void_t<decltype (T::declareElements (std::declval<EnumerationClass&>()))>> : std::true_type {};

/** The metaclass family of every class declared with Enumeration as its base: T's elements
    come from its TOV_ELEMENTS block. */
template <class T>
class DeclaredEnumerationClass : public EnumerationClass
{
protected:
    void declareElements() override
    {
        static_assert (HasDeclaredElements<T>::value,
                       "An enumeration lists its elements in a TOV_ELEMENTS block after TOV_DECLARE_CLASS");
        T::declareElements (*this);
    }
};

} // namespace tov
