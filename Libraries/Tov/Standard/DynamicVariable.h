#pragma once

#include "DynamicVariableSignature.h"
#include "../Container/ObjectHolder.h"
#include "../Core/MemberSignature.h"
#include "../Pointer/ObjectWeakPointer.h"

namespace tov
{

/** A variable declared at run time rather than in a class: a user-made parameter of a document.

    It holds its own value object, of the class that its class's attribute "value" names (its
    classes are "DynamicVariable(T)", made when first named), and a signature with the name
    that users see, a default value and attributes. It may be bound to a target, a variable of
    another object of the same class: the value then follows the target and the target the value.

        auto* gain = DynamicVariable::create (getClass ("DynamicVariable(Real)"), "Gain", &half, nullptr, {});
        gain->setTargetAndCopyValue (&mixer->gain, true);   // the mixer's gain is now 0.5

    Its variables are "dynamicVariableSignature", "value" and "target". The value is saved also
    where it equals its default, so that a document keeps what its user chose.
*/
class DynamicVariable : public Object, public View
{
public:
    TOV_DECLARE_CLASS (DynamicVariable, Object)

    DynamicVariable();
    ~DynamicVariable() override;

    DynamicVariableSignature dynamicVariableSignature;
    ObjectWeakPointer target;

    /** A new variable of the class, named so, with the value brought across (copied when of the
        value's class, converted otherwise), the default and the attributes; null when the class
        makes no dynamic variable. */
    static DynamicVariable* create (Class* dynamicVariableClass, const juce::String& name, const Object* value,
                                    const Object* defaultValue, const StateMap& attributes);

    //==============================================================================
    /** The value, made of the value class when first needed. */
    Object* getValue() const;
    Object* getTarget() const                        { return target.get(); }
    /** The class attribute "value", Object by default. */
    Class* getValueClass() const;
    DynamicVariableSignature& getDynamicVariableSignature() noexcept              { return dynamicVariableSignature; }
    const DynamicVariableSignature& getDynamicVariableSignature() const noexcept  { return dynamicVariableSignature; }
    Object* getDefaultValueObject() const            { return dynamicVariableSignature.getVariableDefaultValue(); }
    /** The attribute "identifier", or the friendly name without one. */
    juce::String getIdentifier() const;
    /** The attribute "identifier" when it is a string, otherwise the friendly name. */
    static juce::String getIdentifier (const juce::String& friendlyName, const StateMap& attributes);
    /** The signature's friendly name. */
    juce::String getFriendlyName() const override    { return dynamicVariableSignature.getFriendlyName(); }

    /** The signature of the value, as a class would give it: class, name "value", read-only
        after the attribute "readonly", the attributes, and "default". Built when first asked
        after a change of the signature. */
    const VariableSignature& getCachedVariableSignature() const;
    /** The cached signature for the value, the class's own for the other variables. */
    MemberSignature* getVariableSignature (size_t index) const override;
    using Object::getVariableSignature;

    /** Copies onto the present default of the value's class, or makes a clone of a fresh
        identity; null removes the default. */
    void setDefaultValue (const Object* newDefault);
    /** Binds the variable to the target and, with copy, writes the value onto it. */
    void setTargetAndCopyValue (Object* newTarget, bool copy);
    /** The value and the signature's class follow the class. */
    void setClass (Class* newClass) override;

    //==============================================================================
    /** The class of target that the variable can be bound to: the value's class here. */
    virtual Class* getExpectedTargetVariableClass() const  { return getValueClass(); }
    /** Declared again under that name, default and attributes; the value and identity stay. */
    virtual void updateDeclaration (const juce::String& name, const Object* newDefault, const StateMap& attributes);
    /** Writes the value onto the target, when there is one and it is of the value's class. */
    virtual void copyValueToTarget();
    /** A copy of the object in which every identifier differs from the original's. */
    virtual Object* cloneFromValue (const Object& original) const;

    //==============================================================================
    void saveVariable (ObjectExporter& exporter, size_t index) const override;
    bool loadVariable (ObjectImporter& importer, juce::StringRef name) override;
    /** The target changed: its value comes across. */
    void changedCallback (Object* object, Object* changedObject) override;
    void variableChangedCallback (Object* variable, Object* changedObject) override;

private:
    mutable ObjectHolder value;
    ObjectWeakPointer attachedTarget;
    mutable VariableSignature cachedVariableSignature;

    static constexpr size_t valueIndex = 1;

    /** The marked bits of the flag word are set while a value crosses to or from the target. */
    bool isCopying() const noexcept                  { return hasMarkedFlag(); }
    void followTarget();
    bool loadValue (ObjectImporter& importer);
    void upgradeAttributesFromParameters (ObjectImporter& importer);
};

} // namespace tov
