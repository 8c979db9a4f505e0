#pragma once

#include "ObjectHolder.h"
#include "../Atomic/Boolean.h"

namespace tov
{

/** A value that can be switched off: the member "enable", and the member "value" of the class
    that the class attribute "value" names, held in an ObjectHolder. Its classes "Option(T)"
    come from a class generator; Option<T> is the typed front.

    The value cannot be edited while the option is off; enable always can.
*/
class ObjectOption : public Object
{
public:
    TOV_DECLARE_CLASS (ObjectOption, Object)

    Boolean enable;

    bool isEnabled() const noexcept                  { return enable.get(); }
    bool getEnabled() const noexcept                 { return enable.get(); }
    void setEnabled (bool enabled, bool notify = true)  { enable.set (enabled, notify); }

    /** The held object, made of the value class when first needed. */
    Object* getValue() const;
    /** The class attribute "value", Object by default. */
    Class* getValueClass() const;

    /** Also makes the held object of the new class's value class. */
    void setClass (Class* newClass) override;

    bool isConvertibleTo (const Object& target) const override;
    /** Converts the held value. */
    void convertToObject (Object& target) const override;
    /** The held value also depends on enable, and is not editable while the option is off. */
    bool isVariableEditable (const Object* variable, VariableDependenciesDeclarator& declarator) const override;
    /** The held value's text when enabled, otherwise "<optional>". */
    juce::String toString() const override;

    /** The held value's JSON when enabled, void otherwise; a loaded value enables the option. */
    juce::var saveToJson (uint32_t flags) const override;
    bool loadFromJson (ExecutionContext& context, const juce::var& value) override;

private:
    mutable ObjectHolder value;
};

} // namespace tov
