#pragma once

#include "EnumerationClass.h"
#include "../Core/ForEachMacro.h"
#include "../Core/ValueObject.h"

namespace tov
{

/** One element of an enumeration, kept as its 32-bit value.

    The class tells the elements. An enumeration is declared with one block that names each
    element once, with its value and what it says beside it:

        class Interpolation : public Enumeration
        {
        public:
            TOV_DECLARE_CLASS (Interpolation, Enumeration)
            TOV_ELEMENTS ((nearest, 0, alternativeName ("closest")),
                          (linear, 1, description ("us-en", "Straight line")),
                          (cubicSpline, 5))
        };

    The block makes the constants Interpolation::nearest..., the elements of the class in that
    order, and takes Enumeration's constructors. Every class declared with Enumeration as its
    base has an EnumerationClass as metaclass, so a declaration without the block does not
    compile. An enumeration can also be generated from its element names, as
    "Enumeration({nearest, linear})". Saved by element name, or as a number for flags and for
    the bare class, which has no elements.
*/
class Enumeration : public ValueObject<int32_t>
{
public:
    // The bare class's metaclass is EnumerationClass itself, so that Enumeration::EnumerationClass
    // and tov::EnumerationClass are one class; classes below get DeclaredEnumerationClass.
    TOV_DECLARE_CLASS_WITH_METACLASS_TYPE (Enumeration, Object, ::tov::EnumerationClass)
    template <class Derived> using MetaclassFamily = DeclaredEnumerationClass<Derived>;

    using ValueObject::ValueObject;

    /** For TOV_ELEMENTS: another name that loading accepts. */
    static EnumerationClass::ElementAttribute alternativeName (const char* name)  { return { nullptr, name }; }
    /** For TOV_ELEMENTS: the element's description in a language, as "us-en". */
    static EnumerationClass::ElementAttribute description (const char* language, const char* text)  { return { language, text }; }

    EnumerationClass* getEnumerationClass() const;
    bool isValueValid() const;
    /** The elements' descriptions in "us-en", "Invalid value 7" for an unknown value. */
    juce::String getDescription() const;
    /** The indices of the set flags, the last declared first. */
    std::vector<size_t> getFlagElements() const;

    bool isConvertibleTo (const Object& target) const override;
    void convertToObject (Object& target) const override;
    /** The element's name; flags joined by " | "; a number for the bare class and unknown values. */
    juce::String toString() const override;
    void save (ObjectExporter& exporter) const override;
    /** A number, or an element's name; an unknown name is reported and gives the class's default value. */
    bool load (ObjectImporter& importer) override;
    /** The element's text; loads the text of any value as a string State would. */
    juce::var saveToJson (uint32_t flags) const override;
    bool loadFromJson (ExecutionContext& context, const juce::var& value) override;

private:
    bool isBare() const;
    bool hasBitFlags() const;
    /** The flags' texts joined by " | ", or the element of value 0, or the number. */
    template <class GetText>
    juce::String joinFlags (GetText&& getText) const;
    int32_t getDefaultClassValue() const;
};

} // namespace tov

/** The elements of an enumeration, each as (name, value, attributes...), where the attributes
    are alternativeName (...) and description (...); see Enumeration. */
#define TOV_ELEMENTS(...) \
    using Enumeration::Enumeration; \
    enum : int32_t { TOV_FOR_EACH (TOV_ELEMENT_CONSTANT, __VA_ARGS__) }; \
    static void declareElements (::tov::EnumerationClass& elements) \
    { \
        TOV_FOR_EACH (TOV_ADD_ELEMENT, __VA_ARGS__) \
    }

#define TOV_ELEMENT_CONSTANT(element) TOV_ELEMENT_CONSTANT_OF element
#define TOV_ELEMENT_CONSTANT_OF(name, value, ...) name = value,
#define TOV_ADD_ELEMENT(element) TOV_ADD_ELEMENT_OF element
#define TOV_ADD_ELEMENT_OF(name, value, ...) elements.addElement (#name, name, { __VA_ARGS__ });
