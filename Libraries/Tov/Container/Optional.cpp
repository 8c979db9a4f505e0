#include "Optional.h"

namespace tov
{

TOV_BEGIN_CLASS (Optional)
    TOV_VARIABLE (enable)
TOV_END_CLASS()

Object* Optional::getVariableByName (juce::StringRef name)
{
    if (name == juce::StringRef ("enable"))
        return &enable;
    return Object::getVariableByName (name);
}

bool Optional::isVariableEditable (const Object* variable, VariableDependenciesDeclarator& declarator) const
{
    const bool editable = Object::isVariableEditable (variable, declarator);
    if (variable == &enable)
        return editable;
    declarator.add (const_cast<Boolean*> (&enable));
    return editable && isEnabled();
}

} // namespace tov
