#pragma once

#include "StateObject.h"
#include "../Atomic/ClassObject.h"
#include "../Atomic/String.h"
#include "../Container/Map.h"
#include "../Core/StateMap.h"
#include "../Pointer/ObjectOwnedPointer.h"

namespace tov
{

/** What a DynamicVariable says about itself, as a class says it of a member: the name that
    users see, a default value and attributes (units, limits, "identifier", "readonly"...).
    The variable's class is kept beside them, unsaved: the variable's class gives it.
*/
class DynamicVariableSignature : public Object
{
public:
    TOV_DECLARE_CLASS (DynamicVariableSignature, Object)

    using Attributes = Map<String, StateObject>;

    DynamicVariableSignature();

    ClassObject variableClass;
    String friendlyName;
    ObjectOwnedPointer defaultValue;
    Attributes attributes;

    Class* getVariableClass() const                  { return variableClass.get(); }
    Object* getVariableDefaultValue() const          { return defaultValue.get(); }
    Attributes& getAttributes() noexcept             { return attributes; }
    const Attributes& getAttributes() const noexcept { return attributes; }
    /** The State of the attribute, or null. */
    std::shared_ptr<State> getAttribute (const juce::String& name) const;
    /** The name that users see. */
    juce::String getFriendlyName() const override    { return friendlyName.get(); }
    String& getFriendlyNameVariable() noexcept       { return friendlyName; }

    /** Replaces the attributes of those names whose states differ and adds the new ones;
        attributes that are not named stay. One change of the map follows, when it changed. */
    void setAttributes (const StateMap& newAttributes);
};

} // namespace tov
