#pragma once

#include "../Core/StateMap.h"
#include <juce_core/juce_core.h>

namespace tov
{

class DynamicVariable;
class ExecutionContext;
class Object;

/** Receives the dynamic variables that an object declares, one call each, in the order in which
    they are to appear. */
class DynamicVariableDeclarator
{
public:
    virtual ~DynamicVariableDeclarator() = default;

    /** Declares a variable of the value's class: its name, initial value (used when it is new),
        default (may be null) and attributes. Gives the variable. */
    virtual DynamicVariable* variable (const juce::String& name, const Object* value, const Object* defaultValue,
                                       const StateMap& attributes) = 0;
};

/** An object that declares dynamic variables: the owner of a DynamicVariableVector, which asks it
    again whenever the vector's variables are invalidated. */
class DynamicVariablesDeclaringObject
{
public:
    virtual ~DynamicVariablesDeclaringObject() = default;
    virtual void declareDynamicVariables (ExecutionContext& context, DynamicVariableDeclarator& declarator) = 0;
};

} // namespace tov
