#pragma once

#include "EnumerationClass.h"

namespace tov
{

/** One element of an enumeration, kept as its 32-bit value.

    The class tells the elements. An enumeration is declared as

        class Interpolation : public Enumeration
        {
        public:
            TOV_DECLARE_CLASS_WITH_METACLASS (Interpolation, Enumeration, ::tov::DeclaredEnumerationClass<Interpolation>)
            using Enumeration::Enumeration;
            enum { nearest, linear };
            static void declareElements (::tov::EnumerationClass& elements);
        };

    (inside an enumeration, the bare name EnumerationClass is Enumeration's own metaclass), or generated from its element names, as "Enumeration({nearest, linear})". Saved by element
    name, or as a number for flags and for the bare class, which has no elements.
*/
class Enumeration : public Object
{
public:
    TOV_DECLARE_CLASS_WITH_METACLASS (Enumeration, Object, ::tov::EnumerationClass)

    explicit Enumeration (int32_t value = 0) : value (value) {}

    int32_t get() const noexcept                     { return value; }
    /** Stores and, with notify, calls changed(); nothing happens when the value is the same. */
    void set (int32_t newValue, bool notify = true);

    ::tov::EnumerationClass* getEnumerationClass() const;
    bool isValueValid() const;
    /** The elements' descriptions in "us-en", "Invalid value 7" for an unknown value. */
    juce::String getDescription() const;
    /** The indices of the set flags, the last declared first. */
    std::vector<size_t> getFlagElements() const;

    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    bool isConvertibleTo (const Object& target) const override;
    void convertToObject (Object& target) const override;
    /** The element's name; flags joined by " | "; a number for the bare class and unknown values. */
    juce::String toString() const override;
    void save (ObjectExporter& exporter) const override;
    /** A number, or an element's name; an unknown name is reported and gives the class's default value. */
    bool load (ObjectImporter& importer) override;

private:
    int32_t value = 0;

    bool isBare() const;
    bool hasBitFlags() const;
    /** The flags' texts joined by " | ", or the element of value 0, or the number. */
    template <class GetText>
    juce::String joinFlags (GetText&& getText) const;
    int32_t getDefaultClassValue() const;
};

} // namespace tov
