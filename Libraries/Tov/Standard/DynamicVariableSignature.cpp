#include "DynamicVariableSignature.h"

namespace tov
{

TOV_BEGIN_CLASS (DynamicVariableSignature)
    TOV_VARIABLE (friendlyName)
    TOV_VARIABLE (defaultValue)
    TOV_VARIABLE (attributes)
TOV_END_CLASS()

DynamicVariableSignature::DynamicVariableSignature()
{
    variableClass.setParent (this);
    friendlyName.setParent (this);
    defaultValue.setParent (this);
    attributes.setParent (this);
}

std::shared_ptr<State> DynamicVariableSignature::getAttribute (const juce::String& name) const
{
    auto* attribute = attributes.find (String (name));
    return attribute != nullptr ? attribute->get() : nullptr;
}

void DynamicVariableSignature::setAttributes (const StateMap& newAttributes)
{
    bool changedMap = false;
    for (auto& [name, state] : newAttributes.getMap())
    {
        if (auto* existing = attributes.find (String (name)))
        {
            if (State::equals (existing->get(), state))
                continue;
            existing->set (state, false);
        }
        else
        {
            attributes.insert (new String (name), new StateObject (state), false);
        }
        changedMap = true;
    }
    if (changedMap)
        attributes.changed();
}

} // namespace tov
