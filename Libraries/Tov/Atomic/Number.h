#pragma once

#include "../Core/Object.h"
#include <limits>

namespace tov
{

/** The base of every value class that holds one integer or one real.

    Limits, units and steps are class attributes, read on demand with the
    object's own signature first, so that a member variable can narrow the
    range of its class. The largest finite double stands for plus infinity
    and its negative for minus infinity throughout the family.
*/
class Number : public Object
{
public:
    TOV_DECLARE_CLASS (Number, Object)

    static constexpr double plusInfinity = std::numeric_limits<double>::max();
    static constexpr double minusInfinity = -plusInfinity;

    //==============================================================================
    virtual bool isBounded() const;
    virtual double getNumber() const = 0;
    virtual void setNumber (double value) = 0;
    virtual double getMinimumValue() const;
    virtual double getMaximumValue() const;
    virtual double getMinimalStep() const                 { return 0.0; }
    virtual double getSmallStep() const;
    /** A round step for markers at this scale; ratio receives how many small markers make a big one. */
    virtual double getMarkerStep (double scale, double& ratio) const;
    virtual juce::String getNumberUnit() const;
    /** The value clamped into the range. */
    virtual double makeNumberValid (double value) const;
    /** Sets the value from what a user typed; false with the reason in error. The signature, when
        given, stands in for the object's own for attributes that change the text form. */
    virtual bool parseNumber (const juce::String& text, juce::String& error, const MemberSignature* signature = nullptr);

    //==============================================================================
    /** A new number of that class, set to the value made valid; null for a class that is no number. */
    static Number* create (Class* numberClass, double value, Object* parent = nullptr);
    void makeValidAndSet (double value)                   { setNumber (makeNumberValid (value)); }

    /** The four operations and parentheses over decimal text, as users type them into number
        fields; an empty text with the reason in error on failure. */
    static juce::String evaluateNumberExpression (const juce::String& expression, juce::String& error);

    double getDefaultLargeValue() const;
    double getDefaultSmallValue() const;
    /** The value's place in the range, from 0 to 1; 0 for an empty range. */
    double getNormalizedValue() const;

    static bool isPlusInfinity (double value) noexcept    { return value >= plusInfinity; }
    static bool isMinusInfinity (double value) noexcept   { return value <= minusInfinity; }
    /** Adds 0.5 to a positive value, subtracts it from any other, and truncates. */
    static double roundHalfAwayFromZero (double value) noexcept;
    /** Truncates towards zero into the 64-bit range; NaN gives 0. */
    static int64_t truncateToInteger64 (double value) noexcept;

    //==============================================================================
    bool isConvertibleTo (const Object& target) const override;
    void convertToObject (Object& target) const override;
    size_t getNumNumberVariables() const override         { return 1; }
    Object* getNumberVariable (size_t index) override     { return index == 0 ? this : nullptr; }

protected:
    Number() = default;

    // Attribute reads: a value on the signature wins over the class's.
    const MemberSignature* getAttributeSignature (const MemberSignature* signature) const;
    bool getBooleanAttribute (juce::StringRef name, bool defaultValue, const MemberSignature* signature = nullptr) const;
    int64_t getIntegerAttribute (juce::StringRef name, int64_t defaultValue, const MemberSignature* signature = nullptr) const;
    double getRealAttribute (juce::StringRef name, double defaultValue, const MemberSignature* signature = nullptr) const;
    juce::String getStringAttribute (juce::StringRef name, const juce::String& defaultValue = {}, const MemberSignature* signature = nullptr) const;

private:
    int getIndexAmong (int count) const;
};

} // namespace tov
