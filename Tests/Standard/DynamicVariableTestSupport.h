#pragma once

#include "Container/ContainerTestSupport.h"
#include <Tov/Standard/Attachable.h>
#include <Tov/Standard/DynamicVariableVector.h>
#include <Tov/Standard/UpdateDynamicVariableDeclarator.h>
#include <functional>

// Sheets of user-made parameters, and controls that follow a variable.
namespace tov::test
{

/** A document whose parameters are declared by the function that the test gives it. */
class Sheet : public Object, public DynamicVariablesDeclaringObject
{
public:
    TOV_DECLARE_CLASS (Sheet, Object)

    String name;
    Integer count;
    DynamicVariableVector parameters;

    std::function<void (DynamicVariableDeclarator&)> declare;
    int numDeclarations = 0;

    void declareDynamicVariables (ExecutionContext&, DynamicVariableDeclarator& declarator) override
    {
        ++numDeclarations;
        if (declare)
            declare (declarator);
    }
};

/** The colour class of the applications, standing in under its name. */
class HsvColor : public Object
{
public:
    TOV_DECLARE_CLASS (HsvColor, Object)

    Real red, green, blue;
};

/** A control that counts what it is told. */
class Knob : public Attachable
{
public:
    TOV_DECLARE_CLASS (Knob, Attachable)

    void targetChanged() override                    { ++numTargetChanges; Attachable::targetChanged(); }
    void targetValueChanged() override               { ++numValueChanges; }
    void targetEditabilityChanged (bool editable) override  { ++numEditabilityChanges; lastEditable = editable; }

    int numTargetChanges = 0, numValueChanges = 0, numEditabilityChanges = 0;
    bool lastEditable = false;
};

/** Knobs that work on some objects only, by their class attributes. */
class IntegerKnob : public Attachable   { public: TOV_DECLARE_CLASS (IntegerKnob, Attachable) };
class AncestorKnob : public Attachable  { public: TOV_DECLARE_CLASS (AncestorKnob, Attachable) };
class CountKnob : public Attachable     { public: TOV_DECLARE_CLASS (CountKnob, Attachable) };
class CompoundKnob : public Attachable  { public: TOV_DECLARE_CLASS (CompoundKnob, Attachable) };
class SameClassKnob : public Attachable { public: TOV_DECLARE_CLASS (SameClassKnob, Attachable) };

/** A panel with its own accessor, which the knob in it takes. */
class Panel : public Object
{
public:
    TOV_DECLARE_CLASS (Panel, Object)

    Accessor accessor;
    Knob knob;
};

/** A value that may not be edited. */
class Gauge : public Object
{
public:
    TOV_DECLARE_CLASS (Gauge, Object)

    Integer level;
};

/** Makes the classes of these tests known to the library tree; safe to call more than once. */
void ensureDynamicVariableTestLibrary();

/** A running program and current service, with these tests' classes and a sheet in the space
    "sheet". */
class DynamicVariableTestBase : public ContainerTest
{
protected:
    DynamicVariableTestBase()                        { ensureDynamicVariableTestLibrary(); }

    Sheet* sheet = makeSheet();
    NamedSpaces::Space& sheetSpace = makeSpace ("sheet", sheet);

    static Sheet* makeSheet()                        { ensureDynamicVariableTestLibrary(); return static_cast<Sheet*> (Sheet::staticClass.createObject()); }
    /** The class "DynamicVariable(T)" of the value class's name. */
    static Class* variableClass (const juce::String& valueClassName);
    /** A new variable of the value's class. */
    static DynamicVariable* makeVariable (const juce::String& name, const Object& value, const Object* defaultValue = nullptr,
                                          const StateMap& attributes = {});
    /** A map of one attribute. */
    static StateMap attribute (const juce::String& name, State* state);
    /** The names of the sheet's parameters and their values, "name=value" joined by ", ". */
    juce::String describeParameters() const;
};

} // namespace tov::test
