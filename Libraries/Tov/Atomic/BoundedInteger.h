#pragma once

#include "IntegerBound.h"

namespace tov
{

/** An integer of class Base that stays below a bound of its own; a bound of 0 means none.
    comparesUnsigned says whether value and bound compare as unsigned numbers.

    What BoundedPositiveInteger and BoundedMemorySize have in common lives here once, so that
    each of them holds only its declaration and what it shows differently. The template
    declares no reflected class: each class over it names Base as its base class, which keeps
    the class tree the same as users see it.
*/
template <class Base, bool comparesUnsigned>
class BoundedInteger : public Base
{
public:
    explicit BoundedInteger (int64_t value = 0, int64_t bound = 0) : Base (value), bound (bound) {}

    int64_t getBound() const noexcept                { return bound; }
    /** The value is limited to bound - 1 when there is a bound. */
    void set (int64_t newValue, bool notify = true) override  { setValueAndBound (newValue, bound, notify); }
    void setValueAndBound (int64_t newValue, int64_t newBound, bool notify = true);
    void setBound (int64_t newBound, bool notify = true)  { setValueAndBound (this->value, newBound, notify); }

    /** bound - 1, or no limit without a bound. */
    double getMaximumValue() const override;
    /** "value / bound". */
    juce::String toString() const override           { return IntegerBound::toString (this->value, bound); }
    bool parseNumber (const juce::String& text, juce::String& error, const MemberSignature* signature = nullptr) override;

    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    void save (ObjectExporter& exporter) const override  { IntegerBound::save (exporter, this->value, bound); }
    bool load (ObjectImporter& importer) override;

private:
    int64_t bound = 0;
};

//==============================================================================
template <class Base, bool comparesUnsigned>
void BoundedInteger<Base, comparesUnsigned>::setValueAndBound (int64_t newValue, int64_t newBound, bool notify)
{
    newValue = IntegerBound::limit (newValue, newBound, comparesUnsigned);
    if (newValue == this->value && newBound == bound)
        return;
    this->value = newValue;
    bound = newBound;
    if (notify)
        this->changed();
}

template <class Base, bool comparesUnsigned>
double BoundedInteger<Base, comparesUnsigned>::getMaximumValue() const
{
    if (bound == 0)
        return Base::getMaximumValue();
    // An unsigned bound past the signed range is a large positive number, not a negative one.
    return comparesUnsigned ? (double) (uint64_t) (bound - 1) : (double) (bound - 1);
}

template <class Base, bool comparesUnsigned>
bool BoundedInteger<Base, comparesUnsigned>::parseNumber (const juce::String& text, juce::String& error, const MemberSignature*)
{
    int64_t newValue = 0, newBound = 0;
    if (! IntegerBound::parse (text, newValue, newBound, error))
        return false;
    setValueAndBound (newValue, newBound);
    return true;
}

template <class Base, bool comparesUnsigned>
bool BoundedInteger<Base, comparesUnsigned>::equalsSameClass (const Object& other) const
{
    auto& integer = static_cast<const BoundedInteger&> (other);
    return this->value == integer.value && bound == integer.bound;
}

template <class Base, bool comparesUnsigned>
void BoundedInteger<Base, comparesUnsigned>::copyTo (Object& target) const
{
    Base::copyTo (target);
    if (auto* integer = dynamic_cast<BoundedInteger*> (&target))
        integer->bound = bound;
}

template <class Base, bool comparesUnsigned>
bool BoundedInteger<Base, comparesUnsigned>::load (ObjectImporter& importer)
{
    // Messages name the declared class, as "BoundedPositiveInteger::load".
    const juce::String context = juce::String (this->getDeclaredClassName()) + "::load";
    int64_t newValue = this->value, newBound = bound;
    if (! IntegerBound::load (importer, newValue, newBound, comparesUnsigned, context))
        return false;
    setValueAndBound (newValue, newBound);
    return true;
}

} // namespace tov
