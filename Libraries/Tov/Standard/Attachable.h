#pragma once

#include "Accessor.h"
#include "TargetEditabilityInvalidator.h"
#include "../Pointer/WeakPointer.h"

namespace tov
{

/** An object that follows one target object and reflects it: an editor control, or anything
    that shows or watches a variable of another object.

    It points at its target through the weak pointer "target" (the class attribute "target" says
    what it may hold, see areAttachableAndTargetCompatible), is a view of it, and tells its subclass when the target
    changes (targetChanged), when the target's value changes (targetValueChanged) and when the
    target becomes editable or not (targetEditabilityChanged), also because of another object
    on which the editability depends. It changes its target through its accessor.

        class GainKnob : public Attachable
        {
            void targetValueChanged() override  { repaint(); }
        };
        knob.setTarget (&track.gain, true);
        knob.getAccessor()->setTargetValue (track.gain, Real (0.5), knob.makeSetTransactionDescription ("0.5"), nullptr);
*/
class Attachable : public Object, public View
{
public:
    TOV_DECLARE_CLASS (Attachable, Object)

    Attachable();
    ~Attachable() override;

    ObjectWeakPointer target;

    //==============================================================================
    /** The target that the variable "target" (a weak pointer) of the object or of its nearest
        owner with one points at; null without one. */
    static Object* getTarget (Object& object);
    Object* getTarget() const                        { return target.get(); }
    ObjectWeakPointer& getTargetPointer() noexcept   { return target; }
    const ObjectWeakPointer& getTargetPointer() const noexcept  { return target; }

    /** Points at the object, when it is not the target already, and then, when asked, attaches
        to it. */
    void setTarget (Object* newTarget, bool updateAttachements = true);
    /** setTarget with null, when there is a target. */
    void removeTarget (bool updateAttachements = true);

    /** The class of the target, or without one, the class attribute "target" (Object by default). */
    Class* getTargetClass() const;
    /** "<detached>" without a target; otherwise its friendly name, after that of its owner with
        withParent (the owner of a pointer or a list standing for the pointer or list). */
    juce::String getTargetFriendlyName (bool withParent) const;

    /** The accessor of the nearest owner that has one, else the current service's; kept. */
    Accessor* getAccessor();
    bool isTargetEditable() const;

    /** Tells each attachable that points at the object whether it is editable now. */
    static void invalidateEditability (Object& object);

    /** "Change " and the target's name with its owner's. */
    juce::String makeChangeTransactionDescription() const;
    /** "Set ", the target's name with its owner's, " to " and the value's text. */
    juce::String makeSetTransactionDescription (const juce::String& valueText) const;
    juce::String makeSetTransactionDescription (const Object& value) const  { return makeSetTransactionDescription (value.toString()); }

    /** Whether attachables of that class can work on the object, by the class attributes
        "target", "mustBeConvertibleTo", "requiresAncestorOfClass", "requiresVariableOfClass"
        and "requiresVariables", those that are present. */
    static bool areAttachableAndTargetCompatible (Class* attachableClass, Object& object);

    /** Moves the view from the object it is attached to onto the target, and watches what the
        target's editability depends on. */
    void updateTargetAttachements();

    //==============================================================================
    /** The target resolves. */
    virtual bool hasTarget() const                   { return target.get() != nullptr; }
    /** Another weak pointer to the target changed; nothing here. */
    void weakPointerToTargetChanged (ObjectWeakPointer*) override  {}
    /** Attaches to the new target and tells the subclass of its value and editability. */
    virtual void targetChanged();
    virtual void targetValueChanged()                {}
    virtual void targetEditabilityChanged (bool editable)  { juce::ignoreUnused (editable); }

    /** The target changed its value. */
    void changedCallback (Object* object, Object* changedObject) override;
    /** A change of the pointer "target" is a change of target. */
    void variableChangedCallback (Object* variable, Object* changedObject) override;

private:
    WeakPointer<Accessor> accessor;
    ObjectWeakPointer attachedTarget;
    TargetEditabilityInvalidator editabilityDeclarator { *this };
};

} // namespace tov
